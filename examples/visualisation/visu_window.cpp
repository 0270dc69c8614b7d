#include "visu_window.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QTime>
#include <QVBoxLayout>

#include <chrono>

using namespace std::chrono_literals;

VisuWindow::VisuWindow(const QString& channel) : table_(0, 2), link_(channel) {
    resize(960, 560);
    setWindowTitle(QStringLiteral("Beispielvisualisierung"));
    title_.setText(QStringLiteral("Noch keine Werte"));
    title_.setStyleSheet(QStringLiteral("font-size: 16pt; font-weight: 600"));
    block_.setObjectName(QStringLiteral("block"));
    table_.setHorizontalHeaderLabels({QStringLiteral("Name"), QStringLiteral("Wert")});
    table_.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_.verticalHeader()->hide();
    table_.horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    table_.horizontalHeader()->setStretchLastSection(true);
    table_.setMinimumWidth(360);

    auto* const middle = new QHBoxLayout;
    middle->addWidget(&picture_, 3);
    middle->addWidget(&table_, 2);
    auto* const bottom = new QHBoxLayout;
    bottom->addWidget(&state_, 1);
    bottom->addWidget(&block_);
    auto* const all = new QVBoxLayout(this);
    all->addWidget(&title_);
    all->addLayout(middle, 1);
    all->addLayout(bottom);

    const auto tell = [this](bool connected) {
        if (ended_) return;
        state_.setText(connected ? QStringLiteral("Mit Velorn verbunden")
                                 : QStringLiteral("Velorn ist nicht da, neuer Versuch jede Sekunde"));
    };
    tell(false);
    link_.changed = tell;
    link_.arrived = [this](const QString& text, bool first) { take(text, first); };
    link_.begin();
}

void VisuWindow::take(const QString& text, bool first) {
    const qsizetype end = text.indexOf(QStringLiteral("VISEND"));
    if (end >= 0) {
        // Behind the mark the next block may have begun before Velorn wrote its number.
        qsizetype digits = text.size();
        while (digits > end && text[digits - 1].isDigit()) --digits;
        show_block(text.left(end), text.mid(digits));
    } else if (text == QStringLiteral("BEENDEN") && !first) {
        show_end();
    }
}

void VisuWindow::show_block(const QString& block, const QString& number) {
    Values values;
    int row = 0;
    for (const QString& line : block.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts)) {
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals < 0) continue;
        const QString name = line.left(equals).trimmed();
        values[name] = line.mid(equals + 1);
        if (table_.rowCount() <= row) table_.insertRow(row);
        table_.setItem(row, 0, new QTableWidgetItem(name));
        table_.setItem(row++, 1, new QTableWidgetItem(values[name]));
    }
    table_.setRowCount(row);
    title_.setText(values.value(QStringLiteral("Anlage"), QStringLiteral("Anlage ohne Namen")));
    picture_.show_values(values);
    block_.setText(QStringLiteral("Block %1 um %2").arg(number, QTime::currentTime().toString()));
}

void VisuWindow::show_end() {
    if (ended_) return;
    ended_ = true;
    link_.fall_silent();
    state_.setText(QStringLiteral("Visualisierung beendet"));
    QTimer::singleShot(2s, this, [this] { close(); });
}

void VisuWindow::closeEvent(QCloseEvent* event) {
    if (ended_) return event->accept();
    event->ignore();
    ended_ = true;
    setEnabled(false);
    // From the loop, since what is said at once would close the window within its own closing.
    link_.end([this] { QTimer::singleShot(0s, this, [this] { close(); }); });
}
