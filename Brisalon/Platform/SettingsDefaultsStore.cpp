#include "Brisalon/Platform/SettingsDefaultsStore.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QString>

namespace brisalon {

namespace {

QString name(std::string_view key)
{
    return QString::fromLatin1(key.data(), static_cast<qsizetype>(key.size()));
}

/// Folders' names are nobody else's business, so the file is the user's alone.
template <typename Change>
void change(Change&& apply)
{
    QString file;
    {
        QSettings settings;
        apply(settings);
        file = settings.fileName();
    }
    if (QFileInfo(file).isFile())
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
}

} // namespace

QVariant SettingsDefaultsStore::read(std::string_view key)
{
    return QSettings().value(name(key));
}

void SettingsDefaultsStore::write(std::string_view key, const QVariant& value)
{
    change([&](QSettings& settings) { settings.setValue(name(key), value); });
}

std::optional<std::string> SettingsDefaultsStore::text(std::string_view key) const
{
    const QVariant value = read(key);
    // A QString becomes UTF-8 here, and a QByteArray stays as it is. In a damaged file
    // there may be lists.
    const bool isText =
        value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray;
    return isText ? std::optional(value.toByteArray().toStdString()) : std::nullopt;
}

std::optional<double> SettingsDefaultsStore::number(std::string_view key) const
{
    bool isNumber = false;
    const double number = read(key).toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<bool> SettingsDefaultsStore::boolean(std::string_view key) const
{
    // The file holds it as a word, and in a damaged file it may be any.
    const QString word = read(key).toString();
    if (word == "true" || word == "1")
        return true;
    if (word == "false" || word == "0")
        return false;
    return std::nullopt;
}

void SettingsDefaultsStore::setText(std::string_view key, std::string_view value)
{
    // Readable in the file where the bytes are text, exact where they are not.
    const QByteArray bytes(value.data(), static_cast<qsizetype>(value.size()));
    const QString text = QString::fromUtf8(bytes);
    write(key, text.toUtf8() == bytes ? QVariant(text) : QVariant(bytes));
}

void SettingsDefaultsStore::setNumber(std::string_view key, double value)
{
    write(key, value);
}

void SettingsDefaultsStore::setBoolean(std::string_view key, bool value)
{
    write(key, value);
}

void SettingsDefaultsStore::remove(std::string_view key)
{
    change([&](QSettings& settings) { settings.remove(name(key)); });
}

} // namespace brisalon
