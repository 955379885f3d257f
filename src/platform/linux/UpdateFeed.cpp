#include "platform/linux/UpdateFeed.h"

#include <QXmlStreamReader>

namespace taliro {

namespace {

QString const appcast = QStringLiteral("http://www.andymatuschak.org/xml-namespaces/sparkle");

struct Item {
    Release release;
    QUrl download;
    bool forUs = true;
};

QUrl secureUrl(QString const& text) {
    QUrl url(text.trimmed(), QUrl::StrictMode);
    return url.isValid() && url.scheme() == QLatin1String("https") && !url.host().isEmpty() ? url : QUrl();
}

void readEnclosure(QXmlStreamAttributes const& attributes, Item& item) {
    item.download = secureUrl(attributes.value(QLatin1String("url")).toString());
    auto version = attributes.value(appcast, QLatin1String("shortVersionString"));
    if (version.isEmpty())
        version = attributes.value(appcast, QLatin1String("version"));
    if (item.release.version.isEmpty())
        item.release.version = version.toString().trimmed();
    if (auto const os = attributes.value(appcast, QLatin1String("os")); !os.isEmpty())
        item.forUs = os == QLatin1String("linux");
}

Item readItem(QXmlStreamReader& xml) {
    Item item;
    QString build;
    while (xml.readNextStartElement()) {
        auto const name = xml.name();
        bool const ours = xml.namespaceUri() == appcast;
        auto text = [&xml] { return xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed(); };
        if (ours && name == QLatin1String("shortVersionString"))
            item.release.version = text();
        else if (ours && name == QLatin1String("version"))
            build = text();
        else if (ours && name == QLatin1String("os"))
            item.forUs = text() == QLatin1String("linux");
        else if (!ours && name == QLatin1String("description"))
            item.release.notesHtml = text();
        else if (!ours && name == QLatin1String("link"))
            item.release.page = secureUrl(text());
        else if (!ours && name == QLatin1String("enclosure")) {
            readEnclosure(xml.attributes(), item);
            xml.skipCurrentElement();
        } else
            xml.skipCurrentElement();
    }
    if (item.release.version.isEmpty())
        item.release.version = build;
    if (item.release.page.isEmpty())
        item.release.page = item.download;
    return item;
}

} // namespace

int compareVersions(QString const& a, QString const& b) {
    auto const [mainA, suffixA] = std::pair(a.section(u'-', 0, 0), a.section(u'-', 1));
    auto const [mainB, suffixB] = std::pair(b.section(u'-', 0, 0), b.section(u'-', 1));
    auto const partsA = mainA.split(u'.');
    auto const partsB = mainB.split(u'.');
    for (qsizetype i = 0; i < std::max(partsA.size(), partsB.size()); ++i) {
        auto const numberA = i < partsA.size() ? partsA[i].toULongLong() : 0;
        auto const numberB = i < partsB.size() ? partsB[i].toULongLong() : 0;
        if (numberA != numberB)
            return numberA < numberB ? -1 : 1;
    }
    if (suffixA.isEmpty() != suffixB.isEmpty())
        return suffixA.isEmpty() ? 1 : -1;
    return suffixA.compare(suffixB);
}

std::optional<Release> newestRelease(QByteArray const& feed) {
    QXmlStreamReader xml(feed);
    if (!xml.readNextStartElement() || xml.name() != QLatin1String("rss") || !xml.readNextStartElement() ||
        xml.name() != QLatin1String("channel"))
        return std::nullopt;
    std::optional<Release> newest;
    while (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("item")) {
            xml.skipCurrentElement();
            continue;
        }
        auto item = readItem(xml);
        if (item.forUs && !item.release.version.isEmpty() && !item.release.page.isEmpty() &&
            (!newest || compareVersions(newest->version, item.release.version) < 0))
            newest = std::move(item.release);
    }
    return xml.hasError() ? std::nullopt : newest;
}

} // namespace taliro
