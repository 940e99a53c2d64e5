#pragma once

#include "Brisalon/App/AppState.h"
#include "support/FakeFolderPanel.h"
#include "support/MemoryBundleInformation.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryFileAccess.h"
#include "support/MemoryWorkspace.h"
#include "support/ScanGate.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace brisalon::tests {

/// A model over real folders, whose scans pass through a gate, and a record of
/// what it announced.
class ModelFixture : public ::testing::Test {
protected:
    ModelFixture();

    /// Another model in place of the one there was, over the same desktop, with that
    /// scan.
    void startOver(ScanTask::Scan scan);

    FileURL url(std::string_view relative) const { return FileURL(tree.at(relative)); }
    /// Scans to the end, whatever that is.
    void scan(const FileURL& root);
    /// Lets events be handled until the condition holds; false when it does not
    /// within a generous time.
    static bool waitFor(const std::function<bool()>& condition);
    /// The same until no scan runs.
    void waitForEnd() const;
    /// The same until nothing else is waited for.
    void waitForWork() const;
    /// Lets one more scan end and has all handled that it told: what should have no
    /// effect has had the chance to have one.
    void letScanEnd() const;

    FileNodeValue child(const FileNodeValue& folder, const std::string& name) const;
    std::vector<std::string> crumbNames() const;

    TemporaryTree tree;
    /// Where the snapshot tool "tmutil" is put, for tests that have one.
    TemporaryTree tools;
    MemoryDefaultsStore store;
    MemoryWorkspace workspace;
    MemoryFileAccess fileAccess;
    MemoryBundleInformation bundle;
    std::chrono::system_clock::time_point now{std::chrono::seconds(1'700'000'000)};
    FakeFolderPanel panel;
    ScanGate gate;
    std::unique_ptr<AppState> state;

    std::vector<std::string> statuses;
    std::vector<bool> scanningStates;
    int treeChanges = 0;
};

} // namespace brisalon::tests
