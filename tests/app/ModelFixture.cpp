#include "ModelFixture.h"

#include <QCoreApplication>
#include <QTest>

namespace brisalon::tests {

ModelFixture::ModelFixture()
{
    startOver(gate.scan());
}

void ModelFixture::startOver(ScanTask::Scan scan)
{
    state = std::make_unique<AppState>(AppServices{
        .defaults = store,
        .folderPanel = panel,
        .workspace = workspace,
        .fileAccess = fileAccess,
        .bundle = bundle,
        .snapshots = SnapshotService(tools.at("tmutil")),
        .scan = std::move(scan),
        .now = [this] { return now; },
    });
    AppState* const model = state.get();
    QObject::connect(model, &AppState::statusMessageChanged, model,
                     [this, model] { statuses.push_back(model->statusMessage().toStdString()); });
    QObject::connect(model, &AppState::isScanningChanged, model,
                     [this, model] { scanningStates.push_back(model->isScanning()); });
    QObject::connect(model, &AppState::treeChanged, model, [this] { ++treeChanges; });
}

void ModelFixture::scan(const FileURL& root)
{
    state->startScan(root);
    waitForEnd();
}

bool ModelFixture::waitFor(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, 20'000);
}

void ModelFixture::waitForEnd() const
{
    ASSERT_TRUE(waitFor([this] { return !state->isScanning(); }));
}

void ModelFixture::waitForWork() const
{
    ASSERT_TRUE(waitFor([this] { return !state->isWorking(); }));
}

void ModelFixture::letScanEnd() const
{
    ASSERT_TRUE(gate.waitForEnd());
    QCoreApplication::processEvents();
}

FileNodeValue ModelFixture::child(const FileNodeValue& folder, const std::string& name) const
{
    const FileNode* const found = folder->child(folder->id() + "/" + name);
    return found ? folder.at(*found) : FileNodeValue();
}

std::vector<std::string> ModelFixture::crumbNames() const
{
    std::vector<std::string> names;
    for (const FileNodeValue& crumb : state->breadcrumbs())
        names.push_back(crumb->name());
    return names;
}

} // namespace brisalon::tests
