#include "platform/linux/RecentlyUsedFile.h"

#include "foundation/Url.h"
#include "platform/linux/Dates.h"

#include <QDateTime>
#include <QXmlStreamReader>

namespace taliro {

namespace {

/// The latest of the times that `element` names; toolkits differ in which they renew.
void takeTimes(QXmlStreamReader const& element, std::optional<Date>& latest) {
    for (auto const* name : {"added", "modified", "visited"}) {
        auto const text = element.attributes().value(QLatin1String(name)).toString();
        auto const time = text.isEmpty() ? QDateTime() : QDateTime::fromString(text, Qt::ISODateWithMs);
        if (!time.isValid())
            continue;
        auto const date = dateFrom(time.toSecsSinceEpoch(), time.time().msec() * 1'000'000LL);
        latest = std::max(latest.value_or(Date::min()), date);
    }
}

} // namespace

std::vector<UsedFile> parseRecentlyUsed(std::string_view bytes) {
    std::vector<UsedFile> files;
    QXmlStreamReader xml(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())));
    std::optional<Url> url;
    std::optional<Date> latest;
    bool isPrivate = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == u"bookmark") {
            url = Url::parse(xml.attributes().value(QLatin1String("href")).toUtf8().toStdString());
            latest.reset();
            isPrivate = false;
            takeTimes(xml, latest);
        } else if (xml.isStartElement() && xml.name() == u"application") {
            takeTimes(xml, latest);
        } else if (xml.isStartElement() && xml.name() == u"private") {
            isPrivate = true;
        } else if (xml.isEndElement() && xml.name() == u"bookmark") {
            if (url && url->isFile() && latest && !isPrivate)
                files.push_back({url->path(), *latest});
            url.reset();
        }
    }
    return files;
}

} // namespace taliro
