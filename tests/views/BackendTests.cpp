#include "support/TemporaryTree.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <cstdlib>

namespace brisalon::tests {

namespace {

/// The window in that state as the real program shows it on a display of its own.
QImage picture(const TemporaryTree& home, const QString& state, const char* variable,
               const char* backend)
{
    const QString file = QString::fromStdString(home.path()) + ".png";
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char* const name : {"QT_QPA_PLATFORM", "QT_QUICK_BACKEND", "QSG_RHI_BACKEND"})
        environment.remove(name);
    environment.insert(variable, backend);
    environment.insert("LIBGL_ALWAYS_SOFTWARE", "1");
    environment.insert("HOME", QString::fromStdString(home.path()));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start("xvfb-run",
                  {"-a", "-s", "-screen 0 1280x820x24", BRISALON_CAPTURE, "--scan",
                   QString::fromStdString(home.path()), "--state", state, "--output", file});
    const bool hasEnded = process.waitForFinished(60'000);
    EXPECT_TRUE(hasEnded && process.exitCode() == 0) << process.readAll().toStdString();
    const QImage image(file);
    QFile::remove(file);
    return image;
}

/// How much of the picture differs by more than the edges of letters do.
double difference(const QImage& a, const QImage& b)
{
    int different = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            different += std::abs(qRed(p) - qRed(q)) > 12 || std::abs(qGreen(p) - qGreen(q)) > 12 ||
                         std::abs(qBlue(p) - qBlue(q)) > 12;
        }
    }
    return static_cast<double>(different) / (a.width() * a.height());
}

} // namespace

TEST(BackendTest, OpenGLAndSoftwareShowTheSamePicture)
{
    if (QStandardPaths::findExecutable("xvfb-run").isEmpty())
        GTEST_SKIP() << "needs xvfb-run";
    TemporaryTree home;
    home.file("node_modules/a.js", 4 * mib);
    home.file("setup.iso", 3 * mib);
    home.file("Movies/c.mov", 6 * mib);
    for (const char* const state : {"welcome", "inspector-hog", "confirm-trash"}) {
        SCOPED_TRACE(state);
        const QImage openGL = picture(home, state, "QSG_RHI_BACKEND", "opengl");
        const QImage software = picture(home, state, "QT_QUICK_BACKEND", "software");
        ASSERT_FALSE(openGL.isNull());
        ASSERT_EQ(openGL.size(), software.size());
        // Two empty windows would be alike as well.
        QImage empty(software.size(), QImage::Format_RGB32);
        empty.fill(software.pixelColor(software.width() / 2, software.height() - 2));
        EXPECT_GT(difference(software, empty), 0.02);
        EXPECT_LT(difference(openGL, software), 0.01);
    }
}

} // namespace brisalon::tests
