// The pictures of the evaluation window, with an archive that is open.
#pragma once

#include "app/program.h"
#include "runtime/outside.h"

#include <QString>
#include <QWidget>

#include <functional>
#include <memory>

namespace velorn {

// A printer that asks nothing: each page becomes this PDF file.
std::unique_ptr<Printer> printer_to_file(const QString& path);

// `take` keeps a picture of a window under a name. Prints one page, too.
void take_evaluation_pictures(Program& program, QWidget& window,
                              const std::function<void(QWidget&, const QString&)>& take);

} // namespace velorn
