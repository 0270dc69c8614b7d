// The boxes of the phone book's window that others need while it is closed, and the settings behind them.
#pragma once

#include "core/module1.h"
#include "core/settings.h"

namespace velorn {

// As the settings have them.
void fill_boxes(Module1& module1, const Settings& settings);

// Over the gateway's modems: the box is ticked and the number is no address.
bool over_gateway(const Module1& module1);

} // namespace velorn
