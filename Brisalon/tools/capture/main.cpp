// Pictures the real window: starts the program, scans a folder, brings the window
// into a named state and writes it as a PNG.

#include "CaptureStates.h"

#include "Brisalon/Platform/DesktopBundleInformation.h"
#include "Brisalon/Platform/HomeFolder.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryFileAccess.h"
#include "support/MemoryWorkspace.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace brisalon;
using namespace brisalon::capture;

namespace {

// Longer than every animation that leads into a state.
constexpr int settlingTime = 700;

struct Order {
    FileURL folder;
    const CaptureState* state;
    QSize size;
    double ratio;
    QString output;
};

QString listOfStates()
{
    QString list;
    for (const CaptureState& state : captureStates())
        list +=
            QStringLiteral("\n  %1  %2").arg(QString(state.name).leftJustified(14), state.meaning);
    return list;
}

/// What the command line asks for; says what is wrong with it and ends the program
/// otherwise. Needs no application yet, because the ratio must be set before.
Order readOrder(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Writes a picture of the window.\n\nStates:" + listOfStates());
    const QCommandLineOption scan("scan", "The folder to scan (the home folder).", "DIR");
    const QCommandLineOption state("state", "The state to picture.", "NAME", "map");
    const QCommandLineOption size("size", "The window's size in points.", "WxH", "1280x820");
    const QCommandLineOption ratio("ratio", "Pixels per point.", "R", "1");
    const QCommandLineOption output("output", "The file to write.", "FILE", "brisalon.png");
    parser.addOptions({scan, state, size, ratio, output});
    const QCommandLineOption help = parser.addHelpOption();

    const bool isUnderstood = parser.parse(arguments) && parser.positionalArguments().isEmpty();
    if (!isUnderstood || parser.isSet(help)) {
        QTextStream(isUnderstood ? stdout : stderr)
            << (parser.errorText().isEmpty() ? QString() : parser.errorText() + "\n\n")
            << parser.helpText();
        std::exit(isUnderstood ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    const auto fail = [](const QString& message) {
        QTextStream(stderr) << message << "\n";
        std::exit(EXIT_FAILURE);
    };

    Order order;
    order.folder = parser.isSet(scan)
                       ? FileURL(QFile::encodeName(parser.value(scan)).toStdString()).standardized()
                       : homeFolder();
    const auto states = captureStates();
    const auto named = std::find_if(states.begin(), states.end(), [&](const CaptureState& other) {
        return parser.value(state) == other.name;
    });
    if (named == states.end())
        fail("There is no state \"" + parser.value(state) + "\". The states are:" + listOfStates());
    order.state = &*named;
    const QStringList sides = parser.value(size).split('x');
    order.size = QSize(sides.value(0).toInt(), sides.value(1).toInt());
    order.ratio = parser.value(ratio).toDouble();
    if (sides.size() != 2 || order.size.isEmpty() || order.ratio <= 0)
        fail("A size is two positive numbers (1280x820), a ratio one.");
    order.output = parser.value(output);
    return order;
}

} // namespace

int main(int argc, char* argv[])
{
    const Order order = readOrder(QStringList(argv, argv + argc));
    qputenv("QT_SCALE_FACTOR", QByteArray::number(order.ratio));
    const bool hasDisplay =
        qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    if (!hasDisplay && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication application(argc, argv);
    BrisalonApp::prepare();
    MemoryDefaultsStore store;
    MemoryWorkspace workspace;
    MemoryFileAccess fileAccess;
    fileAccess.isHiding = false;
    const DesktopBundleInformation bundle;
    const QTemporaryDir tools;
    const std::string snapshotTool = tools.filePath("snapshots").toStdString();
    ScanGate gate;
    BrisalonApp app(
        {store, workspace, fileAccess, bundle, SnapshotService(snapshotTool), gate.scan()});
    QQuickWindow* const window =
        app.open({{"width", order.size.width()}, {"height", order.size.height()}});
    if (!window || !QTest::qWaitForWindowExposed(window))
        return EXIT_FAILURE;

    WindowDriver driver(*window);
    Stage stage{app.state(), gate, driver, fileAccess, snapshotTool, order.folder};
    if (!order.state->enter(stage)) {
        QTextStream(stderr) << "The window did not get into the state \"" << order.state->name
                            << "\".\n";
        return EXIT_FAILURE;
    }
    QTest::qWait(settlingTime);
    if (!window->grabWindow().save(order.output)) {
        QTextStream(stderr) << "Cannot write " << order.output << ".\n";
        return EXIT_FAILURE;
    }
    QTextStream(stdout) << order.output << "\n";
    return EXIT_SUCCESS;
}
