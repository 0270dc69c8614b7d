// A sample visualisation: shows what a controller tells Velorn about its plant. The first argument may name
// another channel than Velorn's own.
#include "visu_window.h"

#include <QApplication>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    VisuWindow window(application.arguments().value(1, QStringLiteral("velorn-visu")));
    window.show();
    return QApplication::exec();
}
