#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace taliro {

/// The newest version that an update feed offers.
struct Release {
    QString version;
    QString notesHtml; ///< what is new; may be empty
    QUrl page;         ///< where it can be downloaded
};

/// Reads a feed in the common appcast form: RSS 2.0 whose items carry `sparkle:version` or
/// `sparkle:shortVersionString` (as elements, or as attributes of `enclosure`), `description` and `link`.
/// The namespace is http://www.andymatuschak.org/xml-namespaces/sparkle. Items for other systems
/// (`sparkle:os` other than "linux") and those without a version are passed over; only https addresses are
/// taken. Nothing where the bytes are no such feed or offer nothing.
std::optional<Release> newestRelease(QByteArray const& feed);

/// Compares "1.10.2" and "1.9" number by number; a suffix after a hyphen comes before the version without
/// one. Less than, equal to or greater than zero.
int compareVersions(QString const& a, QString const& b);

} // namespace taliro
