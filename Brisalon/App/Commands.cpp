#include "Brisalon/App/Commands.h"

#include "Brisalon/App/CopiedPaths.h"
#include "Brisalon/App/ScanTargets.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMetaMethod>
#include <QMetaProperty>

#include <utility>

namespace brisalon {

using Group = Command::Group;

struct Command::Row {
    const char* id;
    const char* text;
    const char* shortcut;
    Group group;
    /// May read any property of the model.
    bool (*isEnabled)(const AppState& state);
    /// Null for one that opens a menu.
    void (*run)(Commands& commands);
};

namespace {

bool always(const AppState&)
{
    return true;
}

bool isScanning(const AppState& state)
{
    return state.isScanning();
}

bool isIdle(const AppState& state)
{
    return !state.isScanning();
}

bool isMapped(const AppState& state)
{
    return state.tree().isPresent();
}

bool canRescan(const AppState& state)
{
    return isIdle(state) && isMapped(state);
}

// In the order of the menu.
constexpr Command::Row rows[] = {
    {"scanHome", "Scan Home Folder", "Ctrl+Shift+H", Group::Scan, isIdle,
     [](Commands& commands) { commands.state().startScan(ScanTargets::home()); }},
    {"scanThisMac", "Scan This Mac", "Ctrl+Shift+M", Group::Scan, isIdle,
     [](Commands& commands) { commands.state().startScan(ScanTargets::thisMac()); }},
    {"scanFolder", "Scan Folder…", "Ctrl+O", Group::Scan, isIdle,
     [](Commands& commands) { commands.state().pickFolderAndScan(); }},
    {"scanAgain", "Scan Again", "Ctrl+R", Group::Scan, canRescan,
     [](Commands& commands) { commands.state().startScan(FileURL(commands.state().scanRoot())); }},
    {"cancelScan", "Cancel Scan", "Escape", Group::KeyOnly, isScanning,
     [](Commands& commands) { commands.state().cancelScan(); }},
    {"zoomIn", "Zoom In", "", Group::Item,
     [](const AppState& state) { return state.selection().canZoom(); },
     [](Commands& commands) { emit commands.zoomRequested(commands.state().selected()); }},
    {"reveal", "Reveal", "", Group::Item,
     [](const AppState& state) { return state.selection().canReveal(); },
     [](Commands& commands) {
         commands.state().requestReveal(commands.state().selection().item().url);
     }},
    {"openTerminal", "Open Terminal Here", "", Group::Item,
     [](const AppState& state) { return state.selection().isFolder(); },
     [](Commands& commands) {
         commands.state().requestTerminal(commands.state().selection().item().url);
     }},
    {"rescanFolder", "Rescan This Folder", "", Group::Item,
     [](const AppState& state) { return isIdle(state) && state.selection().isFolder(); },
     [](Commands& commands) { commands.state().rescan(commands.state().selection().item().url); }},
    {"copyPath", "Copy Path", "Ctrl+C", Group::Item,
     [](const AppState& state) { return !state.selection().places().empty(); },
     [](Commands& commands) {
         QGuiApplication::clipboard()->setMimeData(
             copiedPaths(commands.state().selection().places()).release());
     }},
    {"moveToTrash", "Move to Trash", "Delete", Group::Item,
     [](const AppState& state) { return isIdle(state) && state.selection().isPresent(); },
     [](Commands& commands) { commands.state().requestTrashSelected(); }},
    {"upOneLevel", "Up One Level", "Backspace", Group::KeyOnly, always,
     [](Commands& commands) { commands.state().zoomUpOneLevel(); }},
    {"rescanLevel", "Rescan This Folder", "", Group::Part, canRescan,
     [](Commands& commands) { commands.state().rescan(commands.state().current().url()); }},
    {"scanDisk", "Scan Disk", "", Group::Part, isIdle, nullptr},
    {"whatMayGo", "What May Go…", "", Group::Answer, isMapped,
     [](Commands& commands) { emit commands.whatMayGoRequested(); }},
    {"whatIsLeftOut", "What the Map Leaves Out…", "", Group::Answer, isMapped,
     [](Commands& commands) { emit commands.whatIsLeftOutRequested(); }},
    {"about", "About Brisalon", "", Group::Application, always,
     [](Commands& commands) { emit commands.aboutRequested(); }},
};

} // namespace

Command::Command(const Row& row, Commands& commands)
    : QObject(&commands),
      row_(row),
      commands_(commands),
      isEnabled_(row.isEnabled(commands.state()))
{
    setObjectName(row.id);
}

QString Command::text() const
{
    return QString::fromUtf8(row_.text);
}

QString Command::shortcut() const
{
    return QString::fromLatin1(row_.shortcut);
}

bool Command::opensMenu() const
{
    return !row_.run;
}

Group Command::group() const
{
    return row_.group;
}

void Command::run()
{
    if (isEnabled_ && !opensMenu())
        row_.run(commands_);
}

void Command::update()
{
    const bool isEnabled = row_.isEnabled(commands_.state());
    if (isEnabled == isEnabled_)
        return;
    isEnabled_ = isEnabled;
    emit isEnabledChanged();
}

Commands::Commands(AppState& state) : state_(state)
{
    for (const Command::Row& row : rows) {
        all_.append(new Command(row, *this));
        if (row.group != Group::KeyOnly && row.group != Group::Item)
            menu_.append(all_.last());
    }
    // Whatever changes, so that no row needs to say what its condition reads.
    const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("update()"));
    const QMetaObject& model = AppState::staticMetaObject;
    for (int i = model.propertyOffset(); i < model.propertyCount(); ++i) {
        if (const QMetaProperty property = model.property(i); property.hasNotifySignal())
            connect(&state_, property.notifySignal(), this, slot);
    }
    update();
}

void Commands::update()
{
    for (Command* const command : all_)
        command->update();
    QList<Command*> contextMenu;
    for (Command* const command : all_) {
        if (command->group() == Group::Item && command->isEnabled())
            contextMenu.append(command);
    }
    if (contextMenu == contextMenu_)
        return;
    contextMenu_ = std::move(contextMenu);
    emit contextMenuChanged();
}

} // namespace brisalon
