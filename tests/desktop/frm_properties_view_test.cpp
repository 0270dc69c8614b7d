// The window of the port's settings, found and driven by the names of its controls.
#include "app/program.h"
#include "desktop/frm_properties_view.h"
#include "desktop/qt_event_loop.h"
#include "runtime/text.h"
#include "support/fake_printer.h"
#include "support/fake_serial_port.h"
#include "support/fake_tcp_client.h"
#include "support/fake_visualisation.h"
#include "support/memory_files.h"
#include "support/scripted_dialogs.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

struct PortWindow : testing::Test {
    QtEventLoop loop;
    MemoryFiles files;
    ScriptedDialogs dialogs{loop};
    FakeSerialPort serial{loop};
    FakeTcpClient tcp{loop};
    FakePrinter printer;
    FakeProcesses processes;
    FakeVisualisation visualisation;
    Program program{World{
        loop, files, dialogs, serial, tcp, printer, processes, visualisation, "c:\\velorn", {1100, 700}}};
    FrmProperties& model = program.frmProperties;
    FrmPropertiesView view{model, [](std::function<void()> what) { what(); }, nullptr};

    PortWindow() {
        program.start.Form_Load();
        serial.adapters = {{3, "FT232R USB UART"}};
        model.Form_Load({1100, 700});
        model.form.Visible = true;
    }
    template <class Widget>
    Widget* find(const char* name) {
        return view.findChild<Widget*>(QString::fromLatin1(name));
    }
};

} // namespace

TEST_F(PortWindow, marksThePortsThatAreThere) {
    auto* port = find<QComboBox>("cboPort");
    ASSERT_EQ(port->count(), 255);
    EXPECT_EQ(port->itemText(0), QStringLiteral("Com1"));
    EXPECT_EQ(port->itemText(2), QStringLiteral("Com3   FT232R USB UART"));
    EXPECT_TRUE(port->itemData(2, Qt::FontRole).value<QFont>().bold());
    EXPECT_FALSE(port->itemData(0, Qt::FontRole).value<QFont>().bold());
    serial.adapters = {};
    model.LoadPropertySettings();
    EXPECT_EQ(port->itemText(2), QStringLiteral("Com3"));
}

TEST_F(PortWindow, showsWhatThePortHas) {
    EXPECT_TRUE(view.isVisible());
    EXPECT_EQ(view.windowTitle(), QStringLiteral("COM-Anschluß-Einstellungen"));
    EXPECT_EQ(find<QComboBox>("cboSpeed")->currentText(), QStringLiteral("19200"));
    EXPECT_EQ(find<QComboBox>("cboParity")->currentText(), QStringLiteral("None"));
    EXPECT_EQ(find<QComboBox>("cboDataBits")->currentText(), QStringLiteral("8"));
    EXPECT_EQ(find<QComboBox>("cboStopBits")->currentText(), QStringLiteral("1"));
    EXPECT_TRUE(find<QRadioButton>("optFlow1")->isChecked());
    EXPECT_TRUE(find<QRadioButton>("optEcho0")->isChecked());
}

TEST_F(PortWindow, handsOnWhatThePersonChooses) {
    Q_EMIT find<QComboBox>("cboPort")->activated(4);
    find<QComboBox>("cboSpeed")->setEditText(QStringLiteral("14400"));
    Q_EMIT find<QComboBox>("cboParity")->activated(0);
    find<QRadioButton>("optFlow0")->click();
    find<QRadioButton>("optEcho1")->click();
    find<QPushButton>("cmdOK")->click();
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(program.settings.comport, Variant(std::int16_t{5}));
    EXPECT_EQ(program.settings.comsettings, Variant("14400,e,8,1"));
    EXPECT_EQ(program.settings.comhandshake, Variant(std::int16_t{0}));
    EXPECT_EQ(program.settings.comecho, Variant(true));
}

TEST_F(PortWindow, isCancelledByItsButtonAndByEscape) {
    find<QPushButton>("cmdCancel")->click();
    EXPECT_FALSE(view.isVisible());
    model.form.Visible = true;
    EXPECT_TRUE(view.isVisible());
    view.close();
    EXPECT_FALSE(model.form.Visible);
}

TEST_F(PortWindow, staysWithinASmallScreen) {
    EXPECT_LE(view.sizeHint().height(), 360 * 2);
    EXPECT_LE(view.sizeHint().width(), 640);
}

} // namespace velorn::test
