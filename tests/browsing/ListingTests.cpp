#include "browsing/Listing.h"

#include "browsing/DirectoryLoader.h"
#include "support/FakePlatform.h"

#include <array>
#include <random>

namespace taliro::testing {
namespace {

FileEntry entry(std::string const& name, std::optional<int> size = 0, std::optional<int> day = {},
                std::optional<std::string> kind = {}, bool isDirectory = false) {
    auto const date = day ? std::optional(Date(std::chrono::hours(24 * *day))) : std::nullopt;
    return {Url::file("/f/" + name, isDirectory), isDirectory, date, date, size, std::move(kind)};
}
FileEntry folder(std::string const& name) {
    return entry(name, 0, {}, "Folder", true);
}

std::string names(RowList const& rows) {
    std::string text;
    for (std::size_t i = 0; i < rows.size(); ++i)
        text += (i ? " " : "") + rows[i].name();
    return text;
}

TEST(Listing, OrdersByEachKeyInBothDirections) {
    std::vector<FileEntry> const entries{entry("b.txt", 20, 3, "text"),
                                         folder("Zoo"),
                                         entry("A.txt", 10, 3, "Text"),
                                         entry("c.pdf", 10, std::nullopt, "PDF document"),
                                         folder("apple"),
                                         entry("é.txt", std::nullopt, 9)};
    struct Case {
        SortKey key;
        char const *up, *down;
    };
    for (auto const& [key, up, down] :
         {Case{SortKey::name, "apple Zoo A.txt b.txt c.pdf é.txt", "Zoo apple é.txt c.pdf b.txt A.txt"},
          Case{SortKey::dateModified, "apple c.pdf Zoo A.txt b.txt é.txt",
               "é.txt b.txt A.txt Zoo c.pdf apple"},
          Case{SortKey::dateAdded, "apple c.pdf Zoo A.txt b.txt é.txt", "é.txt b.txt A.txt Zoo c.pdf apple"},
          Case{SortKey::size, "apple é.txt Zoo A.txt c.pdf b.txt", "b.txt c.pdf A.txt Zoo é.txt apple"},
          Case{SortKey::kind, "é.txt apple Zoo c.pdf A.txt b.txt", "b.txt A.txt c.pdf Zoo apple é.txt"}}) {
        Listing listing(entries);
        EXPECT_EQ(names(listing.rows("", key, true)), up) << title(key);
        EXPECT_EQ(names(listing.rows("", key, false)), down) << title(key);
    }
}

TEST(Listing, NamesThatDifferInCaseKeepTheirOrderInBothDirections) {
    Listing listing({entry("B"), entry("a"), entry("b"), entry("A")});
    EXPECT_EQ(names(listing.rows("", SortKey::name, true)), "a A B b");
    EXPECT_EQ(names(listing.rows("", SortKey::name, false)), "B b a A");
}

TEST(Listing, FiltersByTheTrimmedLowercasedName) {
    struct Case {
        char const *filter, *rows;
    };
    for (auto const& [filter, rows] :
         {Case{"  PDF ", "PDFs report.pdf"}, Case{" \t ", "PDFs report.pdf report.txt"},
          Case{"REPORT.", "report.pdf report.txt"}, Case{"pdf\n", ""}, Case{"*", ""},
          Case{"port.t", "report.txt"}}) {
        Listing listing({entry("report.pdf"), folder("PDFs"), entry("report.txt")});
        EXPECT_EQ(names(listing.rows(filter, SortKey::name, true)), rows) << filter;
        EXPECT_EQ(names(RowList({folder("PDFs"), entry("report.pdf"), entry("report.txt")}).filtered(filter)),
                  rows);
    }
    Listing umlauts({entry("ÄRGER.txt"), entry("ärger2.txt"), entry("Arger.txt")});
    EXPECT_EQ(umlauts.rows("är", SortKey::name, true).size(), 2u);
}

/// Names from few parts, so that there are many ties: letters of both cases, accents in both spellings,
/// digits, signs, other scripts, what is no UTF-8, a start that many share, and one sign that sorts as
/// eighteen.
std::vector<FileEntry> randomEntries(std::size_t count, std::mt19937& random) {
    constexpr std::array parts{
        "a", "A", "b", "B", "ch", "é",    "e\u0301",           "ß",     "ss", "9", "10", "_", "-",
        ".", " ", "(", "Ж", "日", "\xff", "Picture taken in ", "\ufdfa"};
    std::vector<FileEntry> entries;
    for (std::size_t i = 0; i < count; ++i) {
        std::string name;
        for (int part = 0; part < 3; ++part)
            name += parts[random() % parts.size()];
        auto made =
            entry(name + std::to_string(random() % 40), random() % 3, random() % 4,
                  random() % 5 ? std::optional<std::string>(random() % 2 ? "Text" : "text") : std::nullopt,
                  random() % 6 == 0);
        entries.push_back(std::move(made));
    }
    return entries;
}

void expectOrdered(Listing& listing, std::vector<FileEntry> const& expected) {
    for (auto key : allSortKeys)
        for (bool ascending : {true, false}) {
            auto sorted = expected;
            std::ranges::stable_sort(
                sorted, [&](auto const& a, auto const& b) { return sortsBefore(a, b, key, ascending); });
            ASSERT_TRUE(listing.rows("", key, ascending).entries() == sorted) << title(key) << ascending;
        }
}

TEST(Listing, AgreesWithTheOrderingRuleForSmallAndLargeFolders) {
    std::mt19937 random(7);
    for (std::size_t count : {0u, 1u, 300u, 9001u}) { // The largest is sorted on two threads.
        auto const entries = randomEntries(count, random);
        Listing listing(entries);
        expectOrdered(listing, entries);
    }
}

TEST(Listing, TakesInChangesAndLeavesEarlierRowsAsTheyWere) {
    Listing listing({entry("a", 1), entry("b", 2), entry("c", 3)});
    auto const before = listing.rows("", SortKey::name, true);
    EXPECT_EQ(names(listing.rows("B", SortKey::name, true)), "b");
    listing.update({"b", "c", "d", "e"}, {entry("c", 30), entry("D", 4), entry("d", 5)});
    EXPECT_EQ(names(before), "a b c");
    EXPECT_EQ(before[2].size, 3);
    EXPECT_EQ(names(listing.rows("", SortKey::name, true)), "a c D d");
    EXPECT_EQ(names(listing.rows("", SortKey::size, false)), "c d D a");
    EXPECT_EQ(names(listing.rows("d", SortKey::name, true)), "D d");
    EXPECT_EQ(listing.size(), 4u);
    EXPECT_EQ(listing.slots(), 6u);
}

TEST(Listing, AgreesWithTheOrderingRuleAfterManyChanges) {
    std::mt19937 random(11);
    std::map<std::string, FileEntry> all;
    for (auto& made : randomEntries(200, random))
        all.insert_or_assign(made.name(), made);
    std::vector<FileEntry> current;
    for (auto const& [name, made] : all)
        current.push_back(made);
    Listing listing(current);
    for (int round = 0; round < 30; ++round) {
        std::vector<FileEntry> present;
        std::set<std::string> changed;
        for (auto& made : randomEntries(4, random))
            if (changed.insert(made.name()).second)
                present.push_back(std::move(made));
        auto const gone = current[random() % current.size()].name();
        changed.insert(gone);
        std::erase_if(present, [&](auto const& made) { return made.name() == gone; });
        listing.update({changed.begin(), changed.end()}, present);
        std::erase_if(current, [&](auto const& known) { return changed.contains(known.name()); });
        std::ranges::copy(present, std::back_inserter(current));
        expectOrdered(listing, current);
    }
}

TEST(RowList, FindsARowAlsoByAWrongGuess) {
    RowList const rows({entry("a"), entry("b")});
    EXPECT_EQ(rows.indexOf(Url::file("/f/b"), 1), 1u);
    EXPECT_EQ(rows.indexOf(Url::file("/f/a"), 1), 0u);
    EXPECT_EQ(rows.indexOf(Url::file("/f/a"), 99), 0u);
    EXPECT_EQ(rows.indexOf(Url::file("/f/a/"), 0), std::nullopt) << "a folder is no file";
    EXPECT_EQ(RowList().indexOf(Url::file("/f/a")), std::nullopt);
}

TEST(DirectoryLoader, ListsWhatIsVisibleWithItsAttributes) {
    FakePlatform fake;
    auto const home = fake.fileManager.addFolder("/home/mira");
    fake.fileManager.addFile("/home/mira/.hidden");
    fake.fileManager.addFile("/home/mira/Visible.txt", {.isRegular = true, .size = 12, .modified = Date{}});
    fake.fileManager.addFile("/home/mira/locked");
    fake.fileManager.unreadable.insert("/home/mira/locked");
    fake.fileManager.addFolder("/home/mira/Sub");
    fake.fileManager.addFile("/home/mira/Sub/deep.txt");

    auto const rows = DirectoryLoader::load(fake.platform, home, "", SortKey::name, true);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0], (FileEntry{home.appending("Sub", true), true, {}, {}, 0, "Folder"}));
    EXPECT_EQ(rows[1], (FileEntry{home.appending("locked"), false, {}, {}, 0, {}}))
        << "listed by its name alone";
    EXPECT_EQ(rows[2], (FileEntry{home.appending("Visible.txt"), false, Date{}, {}, 12, "txt document"}));

    fake.fileManager.unreadable.insert("/home/mira");
    for (auto const& place :
         {home, home.appending("Visible.txt"), home.appending("none"), *Url::parse("taliro:///x")})
        EXPECT_TRUE(DirectoryLoader::load(fake.platform, place, "", SortKey::name, true).empty());
}

TEST(SortKey, IsReadFromItsExactRawValue) {
    EXPECT_EQ(sortKey("dateAdded"), SortKey::dateAdded);
    EXPECT_EQ(sortKey("Name"), std::nullopt);
    EXPECT_EQ(viewMode("list"), ViewMode::list);
    EXPECT_EQ(viewMode(""), std::nullopt);
}

} // namespace
} // namespace taliro::testing
