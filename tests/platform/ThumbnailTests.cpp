#include "platform/linux/ThumbnailService.h"

#include "platform/linux/ImageReading.h"
#include "platform/linux/MimeTypeCatalog.h"
#include "platform/linux/ThumbnailStore.h"
#include "support/HandQueue.h"
#include "support/MixedFiles.h"

#include <thread>

#include <csignal>
#include <sys/stat.h>

namespace taliro {
namespace {

using namespace testing;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

struct Thumbnails : ::testing::Test {
    TemporaryFolder folder;
    MimeTypeCatalog types;
    std::string store = (folder / "cache").string();
    ThumbnailMaker maker{types, store, {(folder / "programs").string()}, 3000ms};
    RendererClient renderer{TALIRO_RENDERER};

    fs::path file(std::string_view name, std::string_view bytes) {
        auto path = folder.write(name, bytes);
        makeOld(path);
        return path;
    }
    QImage make(fs::path const& path, int pixels = 128) {
        auto const picture = maker.make({Url::file(path.string()), pixels, pixels}, renderer, {});
        if (!picture)
            return {};
        auto const* const bytes = reinterpret_cast<uchar const*>(picture->pixels.get());
        return QImage(bytes, picture->width, picture->height, QImage::Format_ARGB32_Premultiplied).copy();
    }
    std::size_t stored(std::string const& size) {
        std::error_code error;
        auto const entries = fs::directory_iterator(store + "/" + size, error);
        return error ? 0 : static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }
    void installProgram(std::string const& script) {
        auto const program = folder.write("make-thumbnail", "#!/bin/sh\n" + script);
        fs::permissions(program, fs::perms::owner_all);
        folder.write("programs/odd.thumbnailer",
                     "[Thumbnailer Entry]\nTryExec=" + program.string() + "\nExec=" + program.string() +
                         " %i %o %s \"100%%\"\nMimeType=video/mp4;application/x-odd;\n");
    }
};

bool isSky(QRgb pixel) {
    return qBlue(pixel) > 180 && qRed(pixel) < 120;
}

TEST_F(Thumbnails, AreMadeOfEveryKindAndFitTheBox) {
    auto const font = anyFont();
    ASSERT_FALSE(font.empty());
    auto const picture = landscape(800, 400);
    struct {
        char const* name;
        std::string bytes;
        QSize size; ///< empty where any will do
    } const cases[] = {
        {"photo.jpg", encoded(picture, "jpg"), {128, 64}},
        {"wrongly named.png", encoded(picture, "jpg"), {128, 64}},
        {"picture.png", encoded(picture, "png"), {128, 64}},
        {"bitmap.bmp", encoded(picture, "bmp"), {128, 64}},
        {"small.png", encoded(landscape(20, 10), "png"), {20, 10}},
        {"thin.png", encoded(landscape(3000, 2), "png"), {128, 1}},
        {"drawing.svg", svg(), {128, 77}},
        {"pages.pdf", pdf(3), {90, 128}},
        {"text.txt", "One line\nand another\n", {102, 128}},
        {"source.cpp", "int main() {}\n", {102, 128}},
        {"latin.txt", "caf\xE9 cr\xE8me\n", {102, 128}},
        {"font.ttf", contentsOf(font), {128, 128}},
        {"bytes \xFF\xFE.jpg", encoded(picture, "jpg"), {128, 64}},
    };
    for (auto const& [name, bytes, size] : cases) {
        auto const image = make(file(name, bytes));
        EXPECT_EQ(image.width(), size.width()) << name;
        EXPECT_NEAR(image.height(), size.height(), 1) << name;
    }
}

TEST_F(Thumbnails, AreTurnedUprightAsTheCameraNoted) {
    auto const picture = landscape(400, 200);
    struct {
        char orientation;
        QSize size;
        QPoint sky;
        QPoint grass;
    } const cases[] = {
        {1, {128, 64}, {64, 8}, {64, 56}},
        {3, {128, 64}, {64, 56}, {64, 8}},
        {6, {64, 128}, {56, 64}, {8, 64}}, // the stored top is the right side
        {8, {64, 128}, {8, 64}, {56, 64}},
    };
    for (auto const& [orientation, size, sky, grass] : cases) {
        auto const name = "turned" + std::to_string(orientation) + ".jpg";
        auto const image = make(file(name, photo(picture, orientation)));
        ASSERT_EQ(image.size(), size) << name;
        EXPECT_TRUE(isSky(image.pixel(sky))) << name;
        EXPECT_FALSE(isSky(image.pixel(grass))) << name;
    }
}

TEST_F(Thumbnails, OfDamagedAndHostileFilesFailAndTheNextSucceeds) {
    auto const jpeg = encoded(landscape(400, 200), "jpg");
    std::pair<char const*, std::string> const cases[] = {
        {"empty.jpg", ""},
        {"cut.jpg", jpeg.substr(0, 100)},
        {"noise.jpg", std::string(5000, '\x5A')},
        {"bomb.png", pngBomb()},
        {"endless.png", endlessSvg()}, // a drawing must not slip in among the plain pictures
        {"cut.svg", svg().substr(0, 80)},
        {"cut.pdf", pdf().substr(0, 60)},
        {"looping.pdf",
         "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Count 9/Kids[2 0 "
         "R 2 0 R]>>endobj\ntrailer<</Root 1 0 R>>\n%%EOF\n"},
        {"noise.ttf", std::string(3000, '\x01')},
        {"binary.txt", std::string("\0\x01\x02\x03\x04\x05", 6)},
        {"unknown.qqq", "nobody knows"},
    };
    for (auto const& [name, bytes] : cases)
        EXPECT_TRUE(make(file(name, bytes)).isNull()) << name;
    // Drawn or not: what counts is that it ends.
    make(file("endless.svg", endlessSvg()));
    make(file("huge.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='1e9' height='1'/>"));
    EXPECT_TRUE(make(folder / "missing.jpg").isNull());
    mkfifo((folder / "pipe.jpg").c_str(), 0600);
    EXPECT_TRUE(make(folder / "pipe.jpg").isNull());
    EXPECT_FALSE(make(file("fine.svg", svg())).isNull());
}

TEST_F(Thumbnails, SurviveTheRenderersDeath) {
    installProgram("kill -9 $PPID\n");
    EXPECT_TRUE(make(file("deadly.mp4", "x")).isNull());
    EXPECT_FALSE(make(file("drawing.svg", svg())).isNull());

    RendererClient missing{"/nonexistent/renderer"};
    auto const path = file("other.svg", svg());
    EXPECT_FALSE(maker.make({Url::file(path.string()), 128, 128}, missing, {}));
    EXPECT_FALSE(make(path).isNull()) << "a missing renderer is not the file's fault";
}

TEST_F(Thumbnails, OfInstalledProgramsAreTimeLimitedAndCutOffTheNetwork) {
    auto const sample = file("sample.png", encoded(landscape(64, 32), "png"));
    installProgram("test \"$3\" = 128 && test \"$4\" = '100%' && cp " + sample.string() + " \"$2\"\n");
    EXPECT_EQ(make(file("film.mp4", "x")).size(), QSize(64, 32));

    // The host's network devices are out of sight, where the system lets a process leave them behind.
    if (std::system("unshare -n true 2>/dev/null || unshare -rn true 2>/dev/null") == 0) {
        auto const seen = folder / "devices";
        installProgram("grep -c : /proc/self/net/dev > " + seen.string() + "; exit 1\n");
        ThumbnailMaker other{types, store, {(folder / "programs").string()}, 3000ms};
        RendererClient fresh{TALIRO_RENDERER};
        EXPECT_FALSE(other.make({Url::file(file("net.mp4", "x").string()), 128, 128}, fresh, {}));
        EXPECT_EQ(contentsOf(seen), "1\n");
    }

    installProgram("echo $$ > " + (folder / "pid").string() + "; sleep 600\n");
    ThumbnailMaker hasty{types, store, {(folder / "programs").string()}, 400ms};
    auto const start = std::chrono::steady_clock::now();
    EXPECT_FALSE(hasty.make({Url::file(file("slow.mp4", "x").string()), 128, 128}, renderer, {}));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
    auto const program = std::stoi(contentsOf(folder / "pid"));
    auto const hasEnded = [program] {
        return kill(program, 0) != 0 ||
               contentsOf("/proc/" + std::to_string(program) + "/stat").contains(") Z");
    };
    for (auto const end = start + 20s; !hasEnded() && std::chrono::steady_clock::now() < end;)
        std::this_thread::sleep_for(1ms);
    EXPECT_TRUE(hasEnded());
}

TEST_F(Thumbnails, AreKeptAsTheStandardSaysAndUsedWhileTheFileIsTheSame) {
    auto const path = file("a b&c.jpg", encoded(landscape(800, 400), "jpg"));
    ASSERT_EQ(make(path, 64).size(), QSize(64, 32));
    ASSERT_EQ(stored("normal"), 1u);
    auto const kept = fs::directory_iterator(store + "/normal")->path();
    QImage image(QString::fromStdString(kept.string()));
    EXPECT_EQ(image.size(), QSize(128, 64));
    auto const uri = FileStamp::of(path.string())->uri;
    EXPECT_TRUE(uri.ends_with("/a%20b&c.jpg"));
    EXPECT_EQ(image.text(QStringLiteral("Thumb::URI")).toStdString(), uri);
    struct stat status {};
    stat(kept.c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0600u);

    // What another program has put there is shown, as long as its time is the file's.
    auto const texts = image.textKeys();
    QImage marked(128, 64, QImage::Format_ARGB32);
    marked.fill(Qt::magenta);
    for (auto const& key : texts)
        marked.setText(key, image.text(key));
    marked.setText(QStringLiteral("Thumb::MTime"),
                   image.text(QStringLiteral("Thumb::MTime")) + QStringLiteral(".25"));
    marked.save(QString::fromStdString(kept.string()));
    EXPECT_EQ(make(path).pixel(5, 5), qRgb(255, 0, 255));
    fs::last_write_time(path, fs::file_time_type::clock::now() - 30min);
    EXPECT_NE(make(path).pixel(5, 5), qRgb(255, 0, 255));

    // A larger picture asks for a size of its own; a smaller one is then made of it.
    EXPECT_EQ(make(path, 400).width(), 400);
    EXPECT_EQ(stored("x-large"), 1u);
    fs::remove_all(store + "/normal");
    EXPECT_EQ(make(path, 100).width(), 100);
    EXPECT_EQ(stored("normal"), 0u);

    auto const fresh = folder.write("fresh.jpg", encoded(landscape(800, 400), "jpg"));
    EXPECT_FALSE(make(fresh).isNull());
    EXPECT_EQ(stored("normal"), 0u) << "it may be changing still";
}

TEST_F(Thumbnails, ThatFailedAreNotTriedAgainUntilTheFileChanges) {
    auto const path = file("broken.pdf", pdf().substr(0, 60));
    EXPECT_TRUE(make(path).isNull());
    EXPECT_EQ(stored("fail/taliro"), 1u);
    auto const stamp = *FileStamp::of(path.string());
    EXPECT_TRUE(ThumbnailStore(store).hasFailed(stamp));
    std::ofstream(path, std::ios::binary) << pdf();
    fs::last_write_time(path, fs::file_time_type::clock::now() - 30min);
    EXPECT_FALSE(ThumbnailStore(store).hasFailed(*FileStamp::of(path.string())));
    EXPECT_FALSE(make(path).isNull());
}

struct Service : Thumbnails {
    HandQueue queue;
    std::vector<std::string> answered;
    std::map<std::string, bool> hasPicture;

    Subscription ask(ThumbnailService& service, fs::path const& path) {
        auto const name = path.filename().string();
        return service.request({Url::file(path.string()), 64, 64},
                               [this, name](std::optional<Picture> const& picture) {
                                   answered.push_back(name);
                                   hasPicture[name] = picture.has_value();
                               });
    }
    bool waitFor(std::size_t count, std::chrono::seconds limit = 20s) {
        for (auto const end = std::chrono::steady_clock::now() + limit;
             std::chrono::steady_clock::now() < end;) {
            queue.turn();
            if (answered.size() >= count)
                return true;
            std::this_thread::sleep_for(1ms);
        }
        return false;
    }
};

TEST_F(Service, TakesTheNewestFirstForgetsWhatIsTakenBackAndFailsTheOldest) {
    // One thread, kept busy by a program that waits for a file.
    auto const gate = (folder / "gate").string();
    auto const started = folder / "started";
    installProgram("touch " + started.string() + "; while ! test -e " + gate +
                   "; do sleep 0.02; done; exit 1\n");
    ThumbnailService service(queue, types,
                             {.storeFolder = store,
                              .renderer = TALIRO_RENDERER,
                              .programFolders = {(folder / "programs").string()},
                              .threads = 1,
                              .limit = 3,
                              .timeLimit = 20s});
    auto const busy = ask(service, file("busy.mp4", "x"));
    for (auto const end = std::chrono::steady_clock::now() + 20s;
         !fs::exists(started) && std::chrono::steady_clock::now() < end;)
        std::this_thread::sleep_for(1ms);
    ASSERT_TRUE(fs::exists(started));
    auto const bytes = encoded(landscape(100, 100), "png");
    auto const first = ask(service, file("1.png", bytes));
    auto const second = ask(service, file("2.png", bytes));
    auto third = ask(service, file("3.png", bytes));
    auto const fourth = ask(service, file("4.png", bytes));
    third.cancel();
    auto const fifth = ask(service, file("5.png", bytes));
    std::ofstream(gate) << "open";
    ASSERT_TRUE(waitFor(5));
    EXPECT_THAT(answered, ::testing::ElementsAre("1.png", "busy.mp4", "5.png", "4.png", "2.png"));
    EXPECT_FALSE(hasPicture["1.png"]);
    EXPECT_TRUE(hasPicture["5.png"]);
}

/// A number that whoever runs the test may set.
std::size_t setting(char const* name, std::size_t usual) {
    auto const* text = std::getenv(name);
    return text ? std::stoul(text) : usual;
}

TEST_F(Service, MakesAllThatCanBeMadeOfAMixedFolderAgainAndAgain) {
    auto const files = makeMixedFiles(folder, setting("TALIRO_MIXED_FILES", 48));
    ThumbnailService service(
        queue, types,
        {.storeFolder = store, .renderer = TALIRO_RENDERER, .limit = files.size(), .timeLimit = 20s});
    auto const passes = setting("TALIRO_MIXED_PASSES", 2);
    for (std::size_t pass = 0; pass < passes; ++pass) {
        if (pass % 2 == 0)
            fs::remove_all(store); // Made anew; then found again.
        answered.clear();
        std::vector<Subscription> requests;
        for (auto const& file : files)
            requests.push_back(ask(service, file.path));
        ASSERT_TRUE(waitFor(files.size(), 600s)) << "pass " << pass;
        for (auto const& file : files)
            EXPECT_NE(hasPicture[file.path.filename().string()], file.isDamaged) << file.path;
    }
}

} // namespace
} // namespace taliro
