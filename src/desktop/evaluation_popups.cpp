#include "desktop/evaluation_popups.h"

#include "desktop/control_widgets.h"
#include "desktop/popup_view.h"
#include "desktop/style.h"
#include "desktop/text_rim.h"
#include "desktop/track_widgets.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace velorn {

namespace {

constexpr QSize colour_size(64, 20);
constexpr int number_width = 12; // characters
constexpr int name_width = 30;
constexpr auto zero_lines =
    "Wenn Y-Links MIN <=0 dann wird Y-Rechts Schrittweite für identische Nullinien berechnet";

// A field of the curve's colour, as the chart draws it.
QLabel* colour_field(ColourLabel& control, const QString& name, ControlWidgets& widgets, QWidget* parent) {
    auto* field = new QLabel(parent);
    field->setObjectName(name);
    field->setFixedSize(colour_size);
    field->setAutoFillBackground(true);
    field->setFrameShape(QFrame::Box);
    widgets.show(control, [&control, field] {
        QPalette colours = field->window()->palette();
        colours.setColor(QPalette::Window, curve_tone(control.BackColor, colours));
        field->setPalette(colours);
    });
    return field;
}

struct TrackPopup {
    Popup& popup;
    ColourLabel& colour;
    Button &yes, &no, &choose, &close;
    QString suffix;
};

QFormLayout* form() {
    auto* rows = new QFormLayout;
    rows->setHorizontalSpacing(space::medium);
    rows->setVerticalSpacing(space::small);
    rows->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    return rows;
}

PopupView* track_popup(const TrackPopup& parts, EvaluationControls* with_texts, ControlWidgets& widgets,
                       QWidget& window) {
    const auto named = [&parts](const char* name) { return QString::fromLatin1(name) + parts.suffix; };
    auto* view = new PopupView(parts.popup, named("pickanal"), widgets, &window);
    auto* colour = new QHBoxLayout;
    colour->setSpacing(space::medium);
    colour->addWidget(colour_field(parts.colour, named("pickanalfarbe"), widgets, view));
    colour->addWidget(widgets.button(parts.choose, named("comkanalfarbe"), QString(), view));
    colour->addStretch(1);
    QFormLayout* const rows = form();
    QWidget* first = nullptr;
    if (with_texts != nullptr) {
        QLineEdit* const name = widgets.text_box(with_texts->txnam, QStringLiteral("txnam"),
                                                 QStringLiteral("Name"), QString(), view);
        name->setMinimumWidth(name->fontMetrics().averageCharWidth() * name_width);
        rows->addRow(QStringLiteral("Name:"), name);
        rows->addRow(QStringLiteral("Einheit:"),
                     widgets.text_box(with_texts->txeinh, QStringLiteral("txeinh"), QStringLiteral("Einheit"),
                                      QString(), view));
        first = name;
    }
    rows->addRow(QStringLiteral("akt. Farbe:"), colour);
    QPushButton* const yes = widgets.button(parts.yes, named("comkanalein"), QString(), view);
    yes->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(space::medium);
    buttons->addWidget(yes);
    buttons->addWidget(widgets.button(parts.no, named("comkanalaus"), QString(), view));
    buttons->addStretch(1);
    buttons->addWidget(widgets.button(parts.close, named("closepickanal"), QString(), view));
    auto* column = new QVBoxLayout;
    column->setSpacing(space::medium);
    column->addLayout(rows);
    column->addLayout(buttons);
    view->set_content(column, first != nullptr ? first : yes, yes);
    view->escape = [&widgets, &close = parts.close] {
        widgets.ask([&close] {
            if (close.Click) close.Click();
        });
    };
    return view;
}

PopupView* axes_popup(EvaluationControls& c, ControlWidgets& widgets, QWidget& window) {
    auto* view = new PopupView(c.picyskala, QStringLiteral("picyskala"), widgets, &window);
    struct Axis {
        TextBox& box;
        QString name, what;
    };
    QFormLayout* const rows = form();
    QLineEdit* first = nullptr;
    for (const Axis& axis :
         {Axis{c.txylimax, QStringLiteral("txylimax"), QStringLiteral("Y-Links MAX:")},
          Axis{c.txylimin, QStringLiteral("txylimin"), QStringLiteral("Y-Links MIN:")},
          Axis{c.txylischr, QStringLiteral("txylischr"), QStringLiteral("Y-Links Schrittweite:")},
          Axis{c.txyremax, QStringLiteral("txyremax"), QStringLiteral("Y-Rechts MAX:")},
          Axis{c.txyreschr, QStringLiteral("txyreschr"), QStringLiteral("Y-Rechts Schrittweite:")}}) {
        QLineEdit* const box = widgets.text_box(axis.box, axis.name, axis.what, QString(), view);
        box->setMinimumWidth(box->fontMetrics().averageCharWidth() * number_width);
        rows->addRow(axis.what, box);
        if (first == nullptr) first = box;
    }
    auto* rule = new QLabel(QString::fromUtf8(zero_lines), view);
    rule->setWordWrap(true);
    rule->setMinimumWidth(rule->fontMetrics().averageCharWidth() * name_width * 3 / 2);
    QPushButton* const close = widgets.button(c.closepicy, QStringLiteral("closepicy"), QString(), view);
    close->setDefault(true);
    auto* column = new QVBoxLayout;
    column->setSpacing(space::medium);
    column->addLayout(rows);
    column->addWidget(rule);
    column->addWidget(close, 0, Qt::AlignRight);
    view->set_content(column, first, close);
    view->escape = [&widgets, &popup = c.picyskala] { widgets.ask([&popup] { popup.Visible = false; }); };
    return view;
}

} // namespace

EvaluationPopups::EvaluationPopups(EvaluationControls& c, ControlWidgets& widgets, QWidget& window)
    : pickanal(track_popup({c.pickanal, c.pickanalfarbe, c.comkanalein, c.comkanalaus, c.comkanalfarbe,
                            c.closepickanal, QString()},
                           &c, widgets, window)),
      pickanalb(track_popup({c.pickanalb, c.pickanalfarbeb, c.comkanaleinb, c.comkanalausb, c.comkanalfarbeb,
                             c.closepickanalb, QStringLiteral("b")},
                            nullptr, widgets, window)),
      picyskala(axes_popup(c, widgets, window)) {}

} // namespace velorn
