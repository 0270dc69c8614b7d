// The phone book's ten lines on screen, with their heads, the scroll bar beside them and the one that changes
// the last column. The mouse wheel scrolls the lines; with the keys of a line the focus goes along with the
// selection.
#pragma once

#include "core/module1.h"
#include "desktop/control_widgets.h"
#include "phonebook/frm_telefon.h"

#include <QWidget>

#include <array>

class QHBoxLayout;

namespace velorn {

class PhoneLineView;

class PhoneLinesView : public QWidget {
  public:
    PhoneLinesView(FrmTelefon& frmtelefon, const Module1& module1, ControlWidgets& widgets, QWidget* parent);

    // On the selected line, or on the first one if the selection is out of sight.
    void focus_selected();

    void scroll_by(int lines);
    void scroll_to_first();
    void scroll_to_last();

  protected:
    void wheelEvent(QWheelEvent* event) override;

  private:
    void build_neighbours(QHBoxLayout& row);
    void build_heads(QHBoxLayout& row);
    QWidget* add_neighbour(Label& label, const QString& name, int step);
    void build_line(int row);
    int build_scroll_bar(QHBoxLayout& row); // gives its width
    void wire(int row);
    // The row of the selection, -1 if it is out of sight.
    int selected_row() const;

    FrmTelefon& frmtelefon_;
    const Module1& module1_;
    ControlWidgets& widgets_;
    std::array<PhoneLineView*, FrmTelefon::lines> lines_{};
    int wheel_ = 0; // turned and not yet scrolled, in eighths of a degree times lines
};

} // namespace velorn
