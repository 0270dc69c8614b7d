#include "desktop/qt_processes.h"

#include <QFileInfo>
#include <QProcess>

namespace velorn {

Outcome QtProcesses::start(std::string_view path) {
    const QFileInfo file(paths_.native(path));
    if (!file.isFile()) return failure(RunTimeError::file_not_found);
    if (!file.isExecutable()) return failure(RunTimeError::permission_denied);
    if (!QProcess::startDetached(file.absoluteFilePath(), {}, file.absolutePath()))
        return failure(RunTimeError::path_file_access);
    return {};
}

} // namespace velorn
