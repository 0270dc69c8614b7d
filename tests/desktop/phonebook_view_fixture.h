// The phone book's window over a main window, found and driven by the names of its controls.
#pragma once

#include "desktop/frmtelefon_view.h"
#include "desktop/main_window.h"
#include "desktop/qt_event_loop.h"
#include "support/fake_printer.h"
#include "support/fake_serial_port.h"
#include "support/fake_tcp_client.h"
#include "support/fake_visualisation.h"
#include "support/memory_files.h"
#include "support/scripted_dialogs.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QWheelEvent>

#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>

namespace velorn::test {

// Everything real but disk, links and person. The clock runs fifty times as fast.
struct PhonebookView : testing::Test {
    QtEventLoop loop{50};
    MemoryFiles files;
    ScriptedDialogs dialogs{loop};
    FakeSerialPort serial{loop};
    FakeTcpClient tcp{loop};
    FakePrinter printer;
    FakeProcesses processes;
    FakeVisualisation visualisation;
    Program program{World{
        loop, files, dialogs, serial, tcp, printer, processes, visualisation, "c:\\velorn", {1100, 700}}};
    MainWindow window{program};
    FrmtelefonView view{program.frmtelefon, program.module1,
                        [this](std::function<void()> what) { loop.post(std::move(what)); }, &window};
    FrmTelefon& f = program.frmtelefon;
    Telefonbuch& book = program.telefonbuch;

    void SetUp() override {
        program.start.Form_Load();
        window.showNormal();
        ASSERT_TRUE(eventually([this] { return serial.is_open(); }));
        (void)serial.take_written();
        program.settings.neustartzaehler = std::int16_t{2};
        for (int i = 0; i < 30; ++i) {
            book[i].name = "Anlage " + std::to_string(i);
            book[i].nummer = "0555" + std::to_string(i);
        }
        book[1].nummer = "10.20.4.17";
        program.phonebook_files.save_telefonbuch();
        open();
    }
    void open() {
        program.phonebook_window.Form_Load();
        f.form.Visible = true;
        view.resize(1366, 720);
        settle();
    }
    bool eventually(const std::function<bool()>& condition) {
        const std::int64_t limit = loop.now_ms() + 600'000;
        loop.post_at(limit, [] {});
        (void)loop.wait_until([&] { return condition() || loop.now_ms() >= limit; });
        return condition();
    }
    // All that was due within 300 ms has happened.
    void settle() {
        bool over = false;
        loop.post_at(loop.now_ms() + 300, [&over] { over = true; });
        (void)loop.wait_until([&over] { return over; });
    }

    template <class W = QWidget>
    W* find(const char* name) {
        W* found = view.findChild<W*>(QString::fromLatin1(name));
        if (found == nullptr) throw std::runtime_error(name);
        return found;
    }
    QLineEdit* edit(const char* name) { return find<QLineEdit>(name); }
    void mouse(const char* name, QEvent::Type type, Qt::MouseButton button = Qt::LeftButton) {
        QWidget* widget = find(name);
        const QPointF at(3, 3);
        QMouseEvent event(type, at, widget->mapToGlobal(at), button,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : button, {});
        QApplication::sendEvent(widget, &event);
    }
    void click(const char* name, Qt::MouseButton button = Qt::LeftButton) {
        QWidget* widget = find(name);
        if (widget->focusPolicy() & Qt::ClickFocus) widget->setFocus(Qt::MouseFocusReason);
        mouse(name, QEvent::MouseButtonPress, button);
        mouse(name, QEvent::MouseButtonRelease, button);
        settle();
    }
    void double_click(const char* name) {
        click(name);
        mouse(name, QEvent::MouseButtonDblClick);
        mouse(name, QEvent::MouseButtonRelease);
        settle();
    }
    void press(const char* name) {
        find<QPushButton>(name)->click();
        settle();
    }
    void key(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = {}) {
        QWidget* widget = view.focusWidget();
        QKeyEvent event(QEvent::KeyPress, code, modifiers, text);
        QApplication::sendEvent(widget, &event);
        settle();
    }
    void type(const char* name, const QString& text) {
        edit(name)->setFocus();
        for (const QChar c : text) {
            QKeyEvent event(QEvent::KeyPress, 0, Qt::NoModifier, c);
            QApplication::sendEvent(edit(name), &event);
        }
        settle();
    }
    // Up through the parents, as the toolkit hands on what comes from a real wheel.
    void wheel(const char* name, int turned) {
        for (QWidget* widget = find(name); widget != nullptr; widget = widget->parentWidget()) {
            QWheelEvent event({3, 3}, widget->mapToGlobal(QPointF(3, 3)), {}, {0, turned}, Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            event.ignore();
            QApplication::sendEvent(widget, &event);
            if (event.isAccepted()) break;
        }
        settle();
    }
    void shortcut(const QKeySequence& wanted) {
        for (QShortcut* const one : view.findChildren<QShortcut*>()) {
            if (one->key() == wanted) Q_EMIT one->activated();
        }
        settle();
    }
    int selected() const { return program.module1.telindex; }
    QString focus() const { return view.focusWidget()->objectName(); }
    // The row whose position is marked, -1 for none.
    int marked() const {
        for (int row = 0; row < FrmTelefon::lines; ++row) {
            if (f.zeilen[static_cast<std::size_t>(row)].nr.BackColor == colour::red) return row;
        }
        return -1;
    }
    QColor ground(const char* name) {
        QWidget* widget = find(name);
        const bool box = qobject_cast<QLineEdit*>(widget) != nullptr;
        return widget->palette().color(box ? QPalette::Base : QPalette::Window);
    }
};

} // namespace velorn::test
