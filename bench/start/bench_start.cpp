// SPDX-License-Identifier: MIT
#include <figure/FigureProgram.h>
#include <start/ProgramRun.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

// How long the programs take to start, compared with the least that a program with Qt Widgets
// takes. All run with simulated cameras.

namespace {

constexpr double exposureMs = 1000.0 / 30;

std::string program(const char* name) {
    return (QCoreApplication::applicationDirPath() + u'/' + QLatin1String(name)).toStdString();
}

FigurePair prepareList() {
    return {[] {
                return ProgramRun::untilEnd({program("pcdctl"), "list", "--sdk", "sim"});
            },
            [] { return ProgramRun::untilEnd({program("start_bare")}); }};
}

/// A camera that exposes as long as its frames take, and whose frames are ready-made.
bool writeScene(const QString& path) {
    QFile file(path);
    const QByteArray scene = R"({"cameras": [{
        "id": "start-1", "model": "Simulated-Start", "serial": "START0001", "flags": ["USB30"],
        "resolutions": [{"width": 640, "height": 480, "fps": 30}],
        "exposure": {"default": 33333, "auto": false}, "source": {"kind": "ring"}}]})";
    return file.open(QIODevice::WriteOnly) && file.write(scene) == scene.size();
}

FigurePair prepareView() {
    const auto folder = std::make_shared<QTemporaryDir>();
    const QString scene = folder->filePath(u"scene.json"_qs);
    if (!folder->isValid() || !writeScene(scene))
        return {[] { return -1.0; }, {}};
    // The user's own settings play no part.
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder->path()));
    const std::vector<std::string> view{program("start_view"), "--sdk", "sim", "--scene",
                                        scene.toStdString()};
    const auto window = [] {
        const double cost = ProgramRun::untilLine({program("start_window")});
        return cost < 0 ? cost : cost + exposureMs;
    };
    return {[folder, view] { return ProgramRun::untilLine(view); }, window};
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QCoreApplication application(argc, argv);
    FigureProgram::add({"start/list", "pcdctl list, start to end",
                        "a bare Qt Widgets program, start to end", "ms", 1.0, Figure::Bound::Ratio,
                        31},
                       prepareList);
    FigureProgram::add({"start/first-picture", "pcdview, start to the first picture, 30 fps",
                        "an empty window, start to its first paint, and one exposure", "ms", 1.5,
                        Figure::Bound::Ratio, 31},
                       prepareView);
    return FigureProgram::run(argc, argv);
}
