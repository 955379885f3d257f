#include "platform/linux/PlacesFiles.h"

#include "foundation/Text.h"

#include <QXmlStreamReader>

namespace taliro {

std::vector<DesktopPlace> parseGtkBookmarks(std::string_view bytes) {
    std::vector<DesktopPlace> places;
    while (!bytes.empty()) {
        auto const end = bytes.find('\n');
        auto const line = trimmingWhitespaceAndNewlines(bytes.substr(0, end));
        bytes = end == std::string_view::npos ? std::string_view() : bytes.substr(end + 1);
        auto const space = line.find(' ');
        auto url = Url::parse(line.substr(0, space));
        if (!url)
            continue;
        DesktopPlace place{.label = std::nullopt, .url = std::move(*url)};
        if (space != std::string_view::npos)
            place.label = trimmingWhitespace(line.substr(space));
        places.push_back(std::move(place));
    }
    return places;
}

std::vector<DesktopPlace> parseKdePlaces(std::string_view bytes) {
    std::vector<DesktopPlace> places;
    QXmlStreamReader xml(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())));
    std::optional<DesktopPlace> place;
    bool hidden = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == u"bookmark") {
            auto url = Url::parse(xml.attributes().value(QLatin1String("href")).toUtf8().toStdString());
            place = url ? std::optional(DesktopPlace{std::nullopt, std::move(*url)}) : std::nullopt;
            hidden = false;
        } else if (xml.isStartElement() && place && xml.name() == u"title") {
            auto const title = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
            if (!title.isEmpty())
                place->label = title.toStdString();
        } else if (xml.isStartElement() && xml.name() == u"IsHidden") {
            hidden = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed() == u"true";
        } else if (xml.isEndElement() && xml.name() == u"bookmark") {
            if (place && !hidden)
                places.push_back(std::move(*place));
            place.reset();
        }
    }
    return places;
}

} // namespace taliro
