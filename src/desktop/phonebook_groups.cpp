#include "desktop/phonebook_groups.h"

#include "desktop/bind.h"
#include "desktop/style.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace velorn {

namespace {

constexpr int short_box_width = 72;
constexpr int number_box_width = 160;

// The label of a box, which the person sees and hears with it.
QLabel* caption_of(QLineEdit* box, const QString& text) {
    auto* label = new QLabel(text, box->parentWidget());
    label->setBuddy(box);
    return label;
}

QGroupBox* dial_group(FrmTelefon& f, ControlWidgets& widgets, QWidget* parent) {
    auto* group = new QGroupBox(QStringLiteral("Wählen"), parent);
    auto* dial =
        widgets.button(f.Command1, QStringLiteral("Command1"),
                       QStringLiteral("Wählt die markierte Anlage an (Eingabe, Doppelklick)"), group);
    dial->setDefault(true);
    dial->setMinimumHeight(32);
    QFont bold = dial->font();
    bold.setBold(true);
    dial->setFont(bold);

    auto* telnet = widgets.check_box(
        f.telnet, QStringLiteral("telnet"),
        QStringLiteral("Telefonnummern über die beiden Modems am Gateway wählen (Alt+T)"), group);
    f.txtprestrcheck.Caption = "Vorwahl";
    auto* prefixed = widgets.check_box(f.txtprestrcheck, QStringLiteral("txtprestrcheck"),
                                       QStringLiteral("Die Vorwahl vor jeder Telefonnummer wählen"), group);
    auto* prefix =
        widgets.text_box(f.txtprestrtext, QStringLiteral("txtprestrtext"), QStringLiteral("Vorwahl"),
                         QStringLiteral("Amtsholung oder Anbieter; ein Komma ist eine Pause"), group);
    prefix->setFixedWidth(short_box_width);
    auto* examples = new QLabel(QStringLiteral("z.B. \"0,\" oder \"01019\""), group);
    auto* port = widgets.text_box(
        f.mdexport, QStringLiteral("mdexport"), QStringLiteral("Standard-Port-NR. IP-Verbindungen"),
        QStringLiteral("TCP-Port, wenn die Bemerkung der Anlage keinen nennt, etwa mit \"port23\""), group);
    port->setFixedWidth(short_box_width);

    auto* grid = new QGridLayout(group);
    grid->setHorizontalSpacing(space::medium);
    grid->setVerticalSpacing(space::small);
    grid->addWidget(dial, 0, 0, 1, 3);
    grid->addWidget(telnet, 1, 0, 1, 3);
    grid->addWidget(prefixed, 2, 0);
    grid->addWidget(prefix, 2, 1);
    grid->addWidget(examples, 2, 2);
    auto* port_row = new QHBoxLayout;
    port_row->setSpacing(space::medium);
    port_row->addWidget(caption_of(port, QStringLiteral("Standard-Port-NR. IP-Verbindungen")));
    port_row->addWidget(port);
    port_row->addStretch(1);
    grid->addLayout(port_row, 3, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(4, 1);
    return group;
}

struct ButtonRow {
    Button FrmTelefon::*button;
    const char* name;
    const char16_t* tip;
};

QGroupBox* edit_group(FrmTelefon& f, ControlWidgets& widgets, QWidget* parent) {
    constexpr ButtonRow rows[] = {
        {&FrmTelefon::Command5, "Command5",
         u"Schiebt an der markierten Position eine leere Zeile ein; die letzte Zeile des Buches fällt weg"},
        {&FrmTelefon::Command6, "Command6", u"Entfernt die markierte Position; alle dahinter rücken nach"},
        {&FrmTelefon::Command2, "Command2", u"Vertauscht zwei Positionen, die danach angeklickt werden"},
        {&FrmTelefon::Command7, "Command7", u"Sucht in Namen und Telefonnummern (Strg+F, F3)"},
        {&FrmTelefon::Command4, "Command4", u"Öffnet die Protokolldatei der markierten Anlage im Editor"},
        {&FrmTelefon::Command8, "Command8",
         u"Telefonbuch als Text ausgeben (C:\\Daten\\Datencsv\\telefon.txt)"},
    };
    auto* group = new QGroupBox(QStringLiteral("Bearbeiten"), parent);
    auto* grid = new QGridLayout(group);
    grid->setHorizontalSpacing(space::medium);
    grid->setVerticalSpacing(space::small);
    int i = 0;
    for (const ButtonRow& row : rows) {
        grid->addWidget(
            widgets.button(f.*row.button, QString::fromLatin1(row.name), QString::fromUtf16(row.tip), group),
            i / 2, i % 2);
        ++i;
    }
    grid->addWidget(
        widgets.button(
            f.comautohol, QStringLiteral("comautohol"),
            QStringLiteral("Holt die 1/4h-Daten aller dafür vorgesehenen Anlagen der Reihe nach (Alt+H)"),
            group),
        i / 2, 0, 1, 2);
    grid->setRowStretch(i / 2 + 1, 1);
    return group;
}

QGroupBox* pc_group(FrmTelefon& f, ControlWidgets& widgets, QWidget* parent) {
    auto* group = new QGroupBox(QStringLiteral("Dieser PC"), parent);
    const QString caller = QStringLiteral("Standardeintrag für Anruferliste");
    auto* name =
        widgets.text_box(f.txtanrufer, QStringLiteral("txtanrufer"), caller,
                         QStringLiteral("Mit diesem Namen meldet sich der PC beim Regler an"), group);
    QLabel* notice = widgets.label(f.Picture3, QStringLiteral("Picture3"), QStringLiteral("%1"), group);
    notice->setWordWrap(true);
    notice->setContentsMargins(space::small, 0, space::small, 0);
    QSizePolicy keeps_its_place(QSizePolicy::Preferred, QSizePolicy::Preferred);
    keeps_its_place.setRetainSizeWhenHidden(true);
    keeps_its_place.setHeightForWidth(true);
    notice->setSizePolicy(keeps_its_place);
    notice->setMinimumHeight(2 * notice->fontMetrics().lineSpacing());
    const QString set_up = QStringLiteral("Modeminitialisierung: AT");
    auto* modem = widgets.text_box(f.txtmodinit, QStringLiteral("txtmodinit"), set_up,
                                   QStringLiteral("Befehle, die das Modem nach \"AT\" bekommt"), group);
    auto* column = new QVBoxLayout(group);
    column->setSpacing(space::small);
    column->addWidget(caption_of(name, caller));
    column->addWidget(name);
    column->addWidget(notice);
    auto* modem_row = new QHBoxLayout;
    modem_row->setSpacing(space::small);
    modem_row->addWidget(caption_of(modem, set_up));
    modem_row->addWidget(modem, 1);
    column->addLayout(modem_row);
    column->addStretch(1);
    return group;
}

QGroupBox* sms_group(FrmTelefon& f, ControlWidgets& widgets, QWidget* parent) {
    auto* group = new QGroupBox(QStringLiteral("SMS mit GSM Modem verschicken"), parent);
    auto* set_up =
        widgets.button(f.Command10, QStringLiteral("Command10"),
                       QStringLiteral("Richtet das GSM-Modem am offenen Anschluß ein; dauert 20 s"), group);
    auto* number = widgets.text_box(f.smsnr, QStringLiteral("smsnr"), QStringLiteral("SMS an Nr:"),
                                    QStringLiteral("Mobilnummer des Empfängers"), group);
    number->setFixedWidth(number_box_width);
    auto* text = widgets.text_box(f.smstxt, QStringLiteral("smstxt"), QStringLiteral("SMS Text:"),
                                  QStringLiteral("Text der Nachricht"), group);
    auto* send = widgets.button(f.Command9, QStringLiteral("Command9"),
                                QStringLiteral("Verschickt die Nachricht über das GSM-Modem"), group);
    auto* row = new QHBoxLayout(group);
    row->setSpacing(space::medium);
    row->addWidget(set_up);
    row->addWidget(caption_of(number, QStringLiteral("SMS an Nr:")));
    row->addWidget(number);
    row->addWidget(caption_of(text, QStringLiteral("SMS Text:")));
    row->addWidget(text, 1);
    row->addWidget(send);
    return group;
}

} // namespace

QWidget* phonebook_groups(FrmTelefon& frmtelefon, ControlWidgets& widgets, QWidget* parent) {
    auto* page = new QWidget(parent);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(space::small);
    auto* upper = new QHBoxLayout;
    upper->setSpacing(space::medium);
    upper->addWidget(dial_group(frmtelefon, widgets, page), 4);
    upper->addWidget(edit_group(frmtelefon, widgets, page), 4);
    upper->addWidget(pc_group(frmtelefon, widgets, page), 5);
    column->addLayout(upper, 1);
    column->addWidget(sms_group(frmtelefon, widgets, page));
    return page;
}

} // namespace velorn
