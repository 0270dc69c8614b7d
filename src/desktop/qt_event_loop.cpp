#include "desktop/qt_event_loop.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace velorn {

namespace {

constexpr qint64 take_in_every_ns = 4'000'000;
constexpr double longest_sleep_ms = 3'600'000; // an int of the toolkit ends at 24 days

DateTime date_time(const QDateTime& moment) {
    const QDate date = moment.date();
    const QTime time = moment.time();
    return {date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second(), time.msec()};
}

} // namespace

struct QtEventLoop::Clocks {
    double speed = 1;
    QElapsedTimer elapsed;
    QDateTime start;
    QTimer alarm;
    std::optional<std::int64_t> alarm_ms; // what the running alarm stands for
    qint64 taken_in_ns = 0;

    double now() const { return static_cast<double>(elapsed.nsecsElapsed()) * speed / 1e6; }
};

QtEventLoop::QtEventLoop(double speed) : clocks_(std::make_unique<Clocks>()) {
    assert(speed > 0);
    clocks_->speed = speed;
    clocks_->start = QDateTime::currentDateTime();
    clocks_->elapsed.start();
    clocks_->alarm.setSingleShot(true);
    clocks_->alarm.setTimerType(Qt::PreciseTimer);
    Clocks* const clocks = clocks_.get();
    QObject::connect(&clocks->alarm, &QTimer::timeout, [clocks] { clocks->alarm_ms.reset(); });
}

QtEventLoop::~QtEventLoop() = default;

std::int64_t QtEventLoop::now_ms() const { return static_cast<std::int64_t>(clocks_->now()); }

DateTime QtEventLoop::local_time() const {
    // At the common speed the machine's clock is asked each time, since it may be set while we run.
    const bool common = std::abs(clocks_->speed - 1) < 1e-9;
    return date_time(common ? QDateTime::currentDateTime() : clocks_->start.addMSecs(now_ms()));
}

void QtEventLoop::rest(std::optional<std::int64_t> until_ms) {
    if (until_ms != clocks_->alarm_ms) {
        clocks_->alarm_ms = until_ms;
        if (until_ms) {
            // Rounded up: an alarm before the time would turn the loop for nothing until it is due.
            const double span = (static_cast<double>(*until_ms) - clocks_->now()) / clocks_->speed;
            clocks_->alarm.start(static_cast<int>(std::ceil(std::clamp(span, 0.0, longest_sleep_ms))));
        } else {
            clocks_->alarm.stop();
        }
    }
    delete_what_waits_for_it();
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    clocks_->taken_in_ns = clocks_->elapsed.nsecsElapsed();
}

void QtEventLoop::take_in() {
    if (clocks_->elapsed.nsecsElapsed() - clocks_->taken_in_ns < take_in_every_ns) return;
    delete_what_waits_for_it();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    clocks_->taken_in_ns = clocks_->elapsed.nsecsElapsed();
}

void QtEventLoop::delete_what_waits_for_it() {
    // Without exec the toolkit never does this for what was asked for outside of its own events.
    if (waiters().size() <= 1) QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace velorn
