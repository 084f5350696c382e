// The application that the targets with widgets run in: without a screen, and silent.
#ifndef ORLUNE_TESTS_FUZZ_OFFSCREENAPPLICATION_H
#define ORLUNE_TESTS_FUZZ_OFFSCREENAPPLICATION_H

#include <QApplication>

namespace fuzz {

inline void startApplication()
{
    if (qApp)
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    new QApplication(argc, argv); // as long as the process
}

} // namespace fuzz

#endif
