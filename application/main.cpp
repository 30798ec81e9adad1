#include "LogOptions.h"
#include "Logger.h"
#include "ProgramInfo.h"
#include "QcbsAppState.h"
#include "QcbsApplication.h"
#include "QcbsMainWindow.h"

#include <QCursor>
#include <QFileInfo>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QSurfaceFormat>
#include <QTimer>
#include <cstdio>
#include <cstring>

namespace {

// Colour depth is the window system's business in this toolkit; the options are still accepted
// so that scripts written for older versions keep working.
void takeColourOption(int& argc, char**& argv)
{
    if (argc < 2)
        return;
    for (const char* option : {"-many-color", "-normal-color", "-custom-color"})
        if (std::strcmp(argv[1], option) == 0) {
            logDebug(1, "main - colour option %s accepted, nothing to change", option);
            --argc;
            ++argv;
            return;
        }
}

void takeGlOptions(int& argc, char** argv)
{
    processLogOptions(argc, argv);
    struct Switch {
        const char* name;
        void (*apply)(QSurfaceFormat&, bool);
    };
    static const Switch switches[] = {
        {"doublebuffer",
         [](QSurfaceFormat& f, bool on) {
             f.setSwapBehavior(on ? QSurfaceFormat::DoubleBuffer : QSurfaceFormat::SingleBuffer);
         }},
        {"depth", [](QSurfaceFormat& f, bool on) { f.setDepthBufferSize(on ? 24 : 0); }},
        {"rgba", [](QSurfaceFormat&, bool) {}},
        {"alpha", [](QSurfaceFormat& f, bool on) { f.setAlphaBufferSize(on ? 8 : 0); }},
        {"accum", [](QSurfaceFormat&, bool) {}},
        {"stencil", [](QSurfaceFormat& f, bool on) { f.setStencilBufferSize(on ? 8 : 0); }},
        {"stereo", [](QSurfaceFormat& f, bool on) { f.setStereo(on); }},
        {"directrendering", [](QSurfaceFormat&, bool) {}},
        {"overlay", [](QSurfaceFormat&, bool) {}},
    };
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        bool used = false;
        if (arg && arg[0] == '-') {
            if (std::strcmp(arg, "-debug-history") == 0) {
                logDebug(1, "main - command history tracing on");
                used = true;
            }
            for (const Switch& s : switches) {
                const bool on = std::strcmp(arg + 1, s.name) == 0;
                const bool off = std::strncmp(arg + 1, "no", 2) == 0 && std::strcmp(arg + 3, s.name) == 0;
                if (on || off) {
                    QSurfaceFormat format = QSurfaceFormat::defaultFormat();
                    s.apply(format, on);
                    QSurfaceFormat::setDefaultFormat(format);
                    logDebug(1, "main - OpenGL option %s", arg);
                    used = true;
                    break;
                }
            }
        }
        if (!used)
            argv[kept++] = argv[i];
    }
    argc = kept;
    argv[argc] = nullptr;
}

// The 3D view draws with OpenGL: a system that cannot make a context is told so at once rather
// than on the first click on the visualiser.
bool hasOpenGL()
{
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    return context.create() && context.makeCurrent(&surface);
}

} // namespace

int main(int argc, char** argv)
{
    takeColourOption(argc, argv);
    takeGlOptions(argc, argv);

    QcbsApplication app(argc, argv);
    if (!hasOpenGL()) {
        qWarning("Cifward: This system has no OpenGL support. Exiting.");
        return -1;
    }
    if (QcbsApplication::buildPeriodExpired()) {
        QApplication::closeAllWindows();
        QApplication::quit();
        return 1;
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QcbsApplication::splashCreate();
    QcbsApplication::splashMessage(QStringLiteral("Starting up ..."));
    std::printf("Starting %s %s %s\n", programName().c_str(), programVersion().c_str(),
                programReleaseDate().c_str());
    std::fflush(stdout);
    std::printf("%s\n\n", std::string(43, '=').c_str());
    std::fflush(stdout);
    QApplication::processEvents();
    QObject::connect(&app, &QGuiApplication::lastWindowClosed, &app, &QCoreApplication::quit);

    HQcbsAppState state(new QcbsAppState(QFileInfo(QCoreApplication::applicationFilePath())));
    auto* window = new QcbsMainWindow(state);
    window->show();
    QApplication::restoreOverrideCursor();

    QStringList files;
    for (int i = 1; i < argc; ++i)
        files << QString::fromLocal8Bit(argv[i]);
    QcbsApplication::openCommandLineFiles(window, files);

    QcbsApplication::splashMessage(QStringLiteral("Preparing interface..."));
    QcbsApplication::splashMessage(QStringLiteral("Ready"));
    QTimer::singleShot(1000, &QcbsApplication::splashClose);
    if (QcbsApplication::newerReleaseAvailable())
        window->cifwardHomePage();
    return QApplication::exec();
}
