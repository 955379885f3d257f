#include "platform/linux/MimeTypeCatalog.h"

#include "platform/linux/NamePatterns.h"

#include <QImageReader>
#include <QMimeDatabase>
#include <array>
#include <atomic>
#include <mutex>
#include <optional>

namespace taliro {

namespace {

constexpr char folderKey[] = "/";
constexpr char plainName[] = "file"; ///< says nothing of its type
/// A folder of files that all have extensions of their own must not fill the memory.
constexpr std::size_t mostKnown = 4096;

/// Names without an extension are many, those that tell a type all the same (`Makefile`) are few.
std::string_view decisiveName(std::string_view name) {
    static NamePatterns const patterns;
    return patterns.match(name) ? name : std::string_view(plainName);
}

/// What decides a name's type: its extension, or two of them (`tar.gz`).
std::string_view decisivePart(std::string_view name) {
    auto const last = name.rfind('.');
    if (last == std::string_view::npos)
        return decisiveName(name);
    if (last == 0)
        return name;
    auto const before = name.rfind('.', last - 1);
    // A second part that is long or holds a space is prose ("1. Introduction to.pdf"), not an extension.
    if (before == std::string_view::npos || before == 0 || last - before > 5 ||
        name.substr(before, last - before).find(' ') != std::string_view::npos)
        return name.substr(last);
    return name.substr(before);
}

std::string sentenceCased(QString text) {
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text.toStdString();
}

} // namespace

MimeTypeCatalog::MimeTypeCatalog() {
    static std::atomic<std::uint64_t> count{0};
    m_serial = ++count;
}
MimeTypeCatalog::~MimeTypeCatalog() = default;

MimeTypeCatalog::Known MimeTypeCatalog::lookUp(std::string_view name, bool isDirectory) const {
    QMimeDatabase const database;
    if (isDirectory)
        return {"inode/directory",
                sentenceCased(database.mimeTypeForName(QStringLiteral("inode/directory")).comment())};
    // By the decisive part alone, so that every name that shares it has the same type.
    auto const example = name.starts_with('.') ? "x" + std::string(name) : std::string(name);
    auto const type =
        database.mimeTypeForFile(QString::fromUtf8(example.data(), static_cast<qsizetype>(example.size())),
                                 QMimeDatabase::MatchExtension);
    // Of types that share an extension, a font is what people have (.otf is a rare document's, too).
    if (auto const all = database.mimeTypesForFileName(QString::fromStdString(example)); all.size() > 1)
        for (auto const& other : all)
            if (other.name().startsWith(QStringLiteral("font/")))
                return {other.name().toStdString(), sentenceCased(other.comment())};
    if (type.isDefault())
        return {"application/octet-stream", "Document"};
    return {type.name().toStdString(), sentenceCased(type.comment())};
}

MimeTypeCatalog::Known MimeTypeCatalog::remembered(std::string_view key, bool isDirectory) {
    {
        std::shared_lock const lock(m_mutex);
        if (auto const found = m_known.find(key); found != m_known.end())
            return found->second;
    }
    auto const known = lookUp(key, isDirectory);
    std::unique_lock const lock(m_mutex);
    if (m_known.size() < mostKnown)
        m_known.try_emplace(std::string(key), known);
    return known;
}

MimeTypeCatalog::Known MimeTypeCatalog::known(std::string_view name, bool isDirectory) {
    auto const key = isDirectory ? std::string_view(folderKey) : decisivePart(name);
    // Each thread has the latest answers at hand without a lock: a folder holds many files of few types.
    struct Answer {
        std::uint64_t catalog = 0;
        std::string key;
        std::optional<Known> known;
    };
    thread_local std::array<Answer, 64> answers;
    auto& answer = answers[std::hash<std::string_view>{}(key) % answers.size()];
    if (answer.catalog != m_serial || answer.key != key)
        answer = {m_serial, std::string(key), remembered(key, isDirectory)};
    return *answer.known;
}

std::string MimeTypeCatalog::mimeType(std::string_view name, bool isDirectory) {
    return known(name, isDirectory).mimeType.text();
}

InternedText MimeTypeCatalog::kind(std::string_view name, bool isDirectory) {
    return known(name, isDirectory).kind;
}

std::string MimeTypeCatalog::iconName(std::string_view mimeType) {
    auto const name = QString::fromUtf8(mimeType.data(), static_cast<qsizetype>(mimeType.size()));
    return QMimeDatabase().mimeTypeForName(name).iconName().toStdString();
}

std::string MimeTypeCatalog::genericIconName(std::string_view mimeType) {
    auto const name = QString::fromUtf8(mimeType.data(), static_cast<qsizetype>(mimeType.size()));
    return QMimeDatabase().mimeTypeForName(name).genericIconName().toStdString();
}

PixelSize MimeTypeCatalog::pixelSize(Url const& file) {
    // Qt decodes a name as UTF-8; one that isn't can only be reached through its bytes.
    QImageReader reader(QFile::decodeName(file.path().c_str()));
    // A drawing has no pixels, and to tell its size it would have to be drawn.
    if (reader.format().startsWith("svg"))
        return {};
    auto size = reader.size();
    if (!size.isValid())
        return {};
    if (reader.transformation() & QImageIOHandler::TransformationRotate90)
        size.transpose();
    return {size.width(), size.height()};
}

} // namespace taliro
