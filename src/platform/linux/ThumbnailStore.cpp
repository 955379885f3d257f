#include "platform/linux/ThumbnailStore.h"

#include <array>
#include <cstdlib>
#include <ctime>
#include <memory>

#include <QCryptographicHash>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace taliro {

namespace {

struct SizeFolder {
    int pixels;
    char const* name;
};
constexpr std::array sizeFolders{SizeFolder{128, "normal"}, SizeFolder{256, "large"},
                                 SizeFolder{512, "x-large"}, SizeFolder{1024, "xx-large"}};
constexpr char failures[] = "fail/taliro";

/// A stored picture is small; one that claims to be larger is not ours to decode.
constexpr int largestStored = 2048;

/// Some programs write a fraction that the standard does not know.
std::int64_t wholeSeconds(QString const& time) {
    return time.left(time.indexOf(u'.')).toLongLong();
}

std::optional<QImage> readIfValid(std::string const& path, FileStamp const& file) {
    QImageReader reader(QFile::decodeName(path.c_str()), "png");
    auto const size = reader.size();
    if (!size.isValid() || size.width() > largestStored || size.height() > largestStored)
        return std::nullopt;
    auto image = reader.read();
    if (image.isNull() || image.text(QStringLiteral("Thumb::URI")).toStdString() != file.uri ||
        wholeSeconds(image.text(QStringLiteral("Thumb::MTime"))) != file.modified)
        return std::nullopt;
    auto const stored = image.text(QStringLiteral("Thumb::Size"));
    if (!stored.isEmpty() && stored.toLongLong() != file.size)
        return std::nullopt;
    return image;
}

/// Makes the folder and those above it, for the user alone.
void makeFolders(std::string const& path) {
    for (auto slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        mkdir(path.substr(0, slash).c_str(), 0700);
    mkdir(path.c_str(), 0700);
}

} // namespace

std::optional<FileStamp> FileStamp::of(std::string const& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    std::unique_ptr<char, decltype(&g_free)> const uri(g_filename_to_uri(path.c_str(), nullptr, nullptr),
                                                       &g_free);
    if (!uri)
        return std::nullopt;
    return FileStamp{path, uri.get(), status.st_mtime, status.st_size};
}

int ThumbnailStore::sizeFor(int pixels) {
    for (auto const& folder : sizeFolders)
        if (folder.pixels >= pixels)
            return folder.pixels;
    return sizeFolders.back().pixels;
}

std::string ThumbnailStore::pathOf(FileStamp const& file, std::string const& folder) const {
    auto const hash = QCryptographicHash::hash(QByteArray::fromStdString(file.uri), QCryptographicHash::Md5)
                          .toHex()
                          .toStdString();
    return m_folder + "/" + folder + "/" + hash + ".png";
}

std::optional<QImage> ThumbnailStore::find(FileStamp const& file, int pixels) const {
    auto const enough = sizeFor(pixels);
    for (auto const& folder : sizeFolders) {
        if (folder.pixels < enough)
            continue;
        if (auto image = readIfValid(pathOf(file, folder.name), file))
            return image;
    }
    return std::nullopt;
}

void ThumbnailStore::store(FileStamp const& file, QImage image, int size) const {
    for (auto const& folder : sizeFolders)
        if (folder.pixels == size)
            write(file, image, folder.name);
}

bool ThumbnailStore::hasFailed(FileStamp const& file) const {
    return readIfValid(pathOf(file, failures), file).has_value();
}

void ThumbnailStore::storeFailure(FileStamp const& file) const {
    QImage mark(1, 1, QImage::Format_ARGB32);
    mark.fill(Qt::transparent);
    write(file, mark, failures);
}

void ThumbnailStore::write(FileStamp const& file, QImage& image, std::string const& folder) const {
    // Pictures of the pictures themselves would never end, and a file changed just now may be changing still.
    auto const now = FileStamp::of(file.path);
    if (file.path.starts_with(m_folder + "/") || !now || now->modified != file.modified ||
        now->size != file.size || file.modified >= std::time(nullptr) - 1)
        return;
    image.setText(QStringLiteral("Thumb::URI"), QString::fromStdString(file.uri));
    image.setText(QStringLiteral("Thumb::MTime"), QString::number(file.modified));
    image.setText(QStringLiteral("Thumb::Size"), QString::number(file.size));
    image.setText(QStringLiteral("Software"), QStringLiteral("Taliro"));
    makeFolders(m_folder + "/" + folder);
    auto const path = pathOf(file, folder);
    auto temporary = path + ".XXXXXX";
    int const descriptor = mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0)
        return;
    QFile output;
    output.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
    QImageWriter writer(&output, "png");
    writer.setCompression(20);
    bool const written = writer.write(image) && output.flush();
    output.close();
    if (!written || rename(temporary.c_str(), path.c_str()) != 0)
        unlink(temporary.c_str());
}

} // namespace taliro
