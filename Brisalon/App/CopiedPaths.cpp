#include "Brisalon/App/CopiedPaths.h"

#include "Brisalon/Platform/PercentEncoding.h"

#include <QByteArrayList>
#include <QStringList>

namespace brisalon {

namespace {

QByteArray addressOf(const std::string& path)
{
    return QByteArray::fromStdString("file://" + percentEncoded(path));
}

QString textOf(const std::string& path)
{
    const QString text = QString::fromStdString(path);
    const bool isOneLine = path.find_first_of("\n\r") == std::string::npos;
    return isOneLine && text.toStdString() == path ? text : QString::fromLatin1(addressOf(path));
}

} // namespace

std::unique_ptr<QMimeData> copiedPaths(std::span<const FileURL> items)
{
    QStringList texts;
    QByteArrayList addresses;
    for (const FileURL& item : items) {
        const std::string path = item.path();
        texts.append(textOf(path));
        addresses.append(addressOf(path));
    }
    auto data = std::make_unique<QMimeData>();
    data->setText(texts.join('\n'));
    data->setData("text/uri-list", addresses.join("\r\n") + "\r\n");
    // What the file managers of some desktops look for instead.
    data->setData("x-special/gnome-copied-files", "copy\n" + addresses.join('\n'));
    return data;
}

} // namespace brisalon
