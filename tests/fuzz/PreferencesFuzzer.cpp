// Any bytes in the settings file, or as the settings in it, read as a setting or as none;
// any text comes back as it was stored.

#include "Brisalon/Platform/SettingsDefaultsStore.h"
#include "Brisalon/Services/ScanTargetPreference.h"
#include "Brisalon/Services/UIPreferences.h"

#include "Require.h"
#include "support/TestHome.h"

#include <QCoreApplication>
#include <QFile>
#include <QSettings>

#include <fuzzer/FuzzedDataProvider.h>

using namespace brisalon;
using brisalon::tests::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const tests::TestHome home;
    QCoreApplication::setOrganizationName("Brisalon");
    QCoreApplication::setApplicationName("Brisalon");

    FuzzedDataProvider input(data, size);
    std::string text;
    if (input.ConsumeBool()) {
        text = "[General]\n";
        for (const char* const key : {"lastScanTargetKind", "lastScanRootPath",
                                      "fdaBannerDismissedUntil", "hasSeenMapInteractionHint"})
            text += std::string(key) + '=' + input.ConsumeRandomLengthString(40) + '\n';
    }
    text += input.ConsumeRemainingBytesAsString();
    const QString path = QSettings().fileName();
    QSettings().setValue("made", true); // and so the folders on the way
    QFile file(path);
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    require(file.write(QByteArray::fromStdString(text)) == static_cast<qint64>(text.size()));
    file.close();

    SettingsDefaultsStore store;
    UIPreferences preferences(store);
    (void)preferences.hasSeenMapInteractionHint();
    if (const auto date = preferences.fdaBannerDismissedUntil())
        (void)(*date > std::chrono::system_clock::now());
    const auto target = ScanTargetPreference::load(store);
    require(target.kind != ScanTargetPreference::Kind::customFolder ||
            target.folder.path().starts_with('/'));

    store.setText("text", text);
    require(store.text("text") == text);
    QFile::remove(path);
    return 0;
}
