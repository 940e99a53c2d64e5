#pragma once

#include "Brisalon/App/AppState.h"

#include <QList>
#include <QObject>
#include <QQmlListProperty>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace brisalon {

class Commands;

/// Something that the user can tell the program to do from the menu or with a key. Its
/// objectName says which it is ("scanHome").
class Command : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The list of commands has them all.")
    Q_PROPERTY(QString text READ text CONSTANT)
    Q_PROPERTY(QString shortcut READ shortcut CONSTANT)
    Q_PROPERTY(brisalon::Command::Group group READ group CONSTANT)
    Q_PROPERTY(bool opensMenu READ opensMenu CONSTANT)
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY isEnabledChanged)

public:
    /// What a command stands with in the menu, which draws a line between two groups.
    enum class Group {
        KeyOnly, ///< not in a menu
        Item,    ///< in the context menus of what can be selected
        Scan,
        Part,   ///< scans something else than the usual targets
        Answer, ///< a question about the map, answered on a sheet
        Application,
    };
    Q_ENUM(Group)

    /// What the list says of a command.
    struct Row;

    Command(const Row& row, Commands& commands);

    QString text() const;
    /// As QKeySequence writes it ("Ctrl+R"), which stands for what each system has in
    /// its place; empty for none.
    QString shortcut() const;
    Group group() const;
    /// Whether it stands for a menu of choices, each of which is run by itself.
    bool opensMenu() const;
    bool isEnabled() const { return isEnabled_; }
    /// Does it; nothing while it is not enabled.
    Q_INVOKABLE void run();

signals:
    void isEnabledChanged();

private:
    friend Commands;
    void update();

    const Row& row_;
    Commands& commands_;
    bool isEnabled_;
};

/// Every command of the program, in the order of the menu: the one list from which the
/// menu and the shortcuts are made. The rows are in Commands.cpp.
///
/// Main thread.
class Commands : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one that its window shows.")
    Q_PROPERTY(QQmlListProperty<brisalon::Command> all READ all CONSTANT)
    Q_PROPERTY(QQmlListProperty<brisalon::Command> menu READ menu CONSTANT)
    Q_PROPERTY(
        QQmlListProperty<brisalon::Command> contextMenu READ contextMenu NOTIFY contextMenuChanged)

public:
    /// `state` is what they act on, and outlives them.
    explicit Commands(AppState& state);

    AppState& state() { return state_; }
    const QList<Command*>& list() const { return all_; }
    QQmlListProperty<Command> all() { return {this, &all_}; }
    /// Those that the menu shows.
    QQmlListProperty<Command> menu() { return {this, &menu_}; }
    /// Those for the selection that mean something now: what a context menu shows.
    QQmlListProperty<Command> contextMenu() { return {this, &contextMenu_}; }

signals:
    /// What is the window's to show.
    void aboutRequested();
    void whatMayGoRequested();
    void whatIsLeftOutRequested();
    void zoomRequested(const brisalon::FileNodeValue& node);

    void contextMenuChanged();

private:
    Q_SLOT void update();

    AppState& state_;
    QList<Command*> all_;
    QList<Command*> menu_;
    QList<Command*> contextMenu_;
};

} // namespace brisalon
