// Binding widgets to controls: what the control holds is shown, what the person does is handed on. Every
// widget bears its control's name.
#pragma once

#include "desktop/text_rim.h"
#include "runtime/controls.h"

#include <QAction>
#include <QLabel>
#include <QString>
#include <QWidget>

#include <functional>

namespace velorn {

// Runs `show` now and each time the control changes.
template <class C>
void bind(C& control, std::function<void()> show) {
    control.on_change = std::move(show);
    control.on_change();
}

inline void show_common(const Control& control, QWidget& widget) {
    widget.setVisible(control.Visible);
    widget.setEnabled(control.Enabled);
    widget.setToolTip(to_qstring(control.ToolTipText.get()));
}

// Takes the control's views back, when its window goes before it does.
template <class... C>
void unbind(C&... controls) {
    ((controls.on_change = nullptr), ...);
}

} // namespace velorn
