#include "views/SyntaxHighlighter.h"

#include "views/Theme.h"

#include <algorithm>

namespace taliro {

namespace {

QStringList words(char const* text) {
    auto list = QString::fromLatin1(text).split(u' ');
    list.sort();
    return list;
}

Language cLike(char const* keywords) {
    return {.lineComments = {"//"}, .blocks = {{"/*", "*/"}}, .quotes = "\"'`", .keywords = words(keywords)};
}

Language hashed(char const* keywords) {
    return {.lineComments = {"#"}, .blocks = {}, .quotes = "\"'", .keywords = words(keywords)};
}

struct Known {
    Language language;
    std::vector<std::string_view> endings; ///< of names, in lower case
};

std::vector<Known> const& knownLanguages() {
    static std::vector<Known> const known = [] {
        std::vector<Known> list;
        list.push_back(
            {cLike(
                 "alignas auto bool break case catch char char8_t class co_await co_return co_yield concept "
                 "const consteval constexpr constinit continue decltype default delete do double else enum "
                 "explicit export extern false final float for friend goto if import inline int long mutable "
                 "namespace new noexcept nullptr operator override private protected public requires return "
                 "short signed sizeof static static_assert static_cast struct switch template this throw "
                 "true "
                 "try typedef typename union unsigned using virtual void volatile while #include #define #if "
                 "#ifdef #ifndef #else #elif #endif #pragma #undef"),
             {".c", ".h", ".cc", ".cpp", ".cxx", ".hpp", ".hh", ".ino", ".cu", ".glsl", ".m", ".mm"}});
        list.push_back(
            {cLike(
                 "abstract as async await boolean break case catch class const continue debugger declare "
                 "default "
                 "delete do else enum export extends false final finally for from function if implements "
                 "import "
                 "in instanceof int interface let new null of package private protected public readonly "
                 "return "
                 "static super switch synchronized this throw throws true try type typeof undefined var void "
                 "while with yield"),
             {".js", ".mjs", ".ts", ".tsx", ".jsx", ".java", ".cs", ".groovy", ".scala", ".dart", ".php"}});
        list.push_back(
            {cLike("as async await break case class const continue crate default defer dyn else enum extern "
                   "fallthrough "
                   "false fn for func fun go guard if impl import in interface internal let loop map match "
                   "mod move "
                   "mut nil override package private protocol pub public range ref return select self Self "
                   "static "
                   "struct super switch throw throws trait true try type unsafe use val var where while"),
             {".rs", ".go", ".swift", ".kt", ".kts", ".zig"}});
        auto python = hashed(
            "False None True and as assert async await break class continue def del elif else except finally "
            "for from global if import in is lambda match nonlocal not or pass raise return self try while "
            "with yield");
        python.blocks = {{"\"\"\"", "\"\"\""}, {"'''", "'''"}};
        list.push_back({std::move(python), {".py", ".pyi", ".pyw", "sconstruct"}});
        list.push_back({hashed("alias begin break case cd class def do done echo elif else end ensure esac "
                               "eval exec exit export "
                               "fi for function if in local module nil private public readonly require "
                               "rescue return self set "
                               "shift source test then trap true false unless unset until when while yield"),
                        {".sh", ".bash", ".zsh", ".fish", ".rb", ".pl", ".pm", ".tcl", ".bashrc", ".profile",
                         "rakefile", "gemfile", "dockerfile", "pkgbuild"}});
        list.push_back(
            {hashed("true false null yes no on off if else elseif endif endforeach foreach function "
                    "endfunction set "
                    "include ifeq ifneq ifdef define all"),
             {".yaml", ".yml", ".toml", ".ini", ".conf", ".cfg", ".desktop", ".service", ".properties",
              ".cmake", "makefile", "cmakelists.txt", ".mk", ".gitignore", ".env"}});
        list.push_back(
            {{.lineComments = {}, .blocks = {}, .quotes = "\"", .keywords = words("true false null")},
             {".json", ".geojson", ".webmanifest"}});
        list.push_back(
            {{.lineComments = {},
              .blocks = {{"/*", "*/"}},
              .quotes = "\"'",
              .keywords =
                  words("@media @import @font-face @keyframes @supports !important inherit none auto var "
                        "calc")},
             {".css", ".scss", ".less", ".qss"}});
        list.push_back(
            {{.lineComments = {"--"},
              .blocks = {{"/*", "*/"}},
              .quotes = "'\"",
              .keywords =
                  words("add all alter and as asc begin between by case commit constraint create default "
                        "delete desc distinct drop else end exists foreign from group having if in index "
                        "inner insert into is join key left like limit not null on or order outer primary "
                        "references right select set table then union unique update values view when where "
                        "with"),
              .ignoresCase = true},
             {".sql"}});
        list.push_back(
            {{.lineComments = {"--"},
              .blocks = {{"--[[", "]]"}, {"{-", "-}"}},
              .quotes = "\"'",
              .keywords =
                  words("and case class data deriving do else elseif end false for function if import in "
                        "instance let local module nil not of or repeat return then true type until where "
                        "while")},
             {".lua", ".hs", ".elm"}});
        list.push_back(
            {{.lineComments = {},
              .blocks = {{"<!--", "-->"}},
              .quotes = "\"'",
              .keywords = {},
              .isMarkup = true},
             {".html", ".htm", ".xml", ".xhtml", ".svg", ".plist", ".ui", ".qrc", ".rss", ".xsl", ".vue"}});
        return list;
    }();
    return known;
}

bool isWordCharacter(QChar c) {
    return c.isLetterOrNumber() || c == u'_';
}

bool startsAt(QString const& text, qsizetype position, std::string_view part) {
    return QStringView(text).sliced(position).startsWith(
        QLatin1StringView(part.data(), static_cast<qsizetype>(part.size())));
}

} // namespace

Language const* languageOf(std::string_view name) {
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (auto const& known : knownLanguages())
        for (auto const ending : known.endings)
            if (ending.starts_with('.') ? lower.ends_with(ending) : lower == ending)
                return &known.language;
    return nullptr;
}

SyntaxHighlighter::SyntaxHighlighter(Language const& language, QTextDocument* document)
    : QSyntaxHighlighter(document), m_language(language) {
    bool const dark = Theme::current().isDark();
    m_comment.setForeground(QColor(dark ? 0x7f8c98 : 0x707f8c));
    m_string.setForeground(QColor(dark ? 0xff8170 : 0xc41a16));
    m_number.setForeground(QColor(dark ? 0xd9c97c : 0x1c00cf));
    m_keyword.setForeground(QColor(dark ? 0xff7ab2 : 0x9b2393));
    m_tag.setForeground(QColor(dark ? 0x6bdfff : 0x0b4f79));
}

void SyntaxHighlighter::highlightBlock(QString const& text) {
    qsizetype position = 0;
    // A line that begins inside of a block: its state is the block's number.
    int inside = previousBlockState();
    setCurrentBlockState(-1);
    while (position < text.size()) {
        if (inside >= 0) {
            auto const end = m_language.blocks[static_cast<std::size_t>(inside)].second;
            auto const found =
                text.indexOf(QLatin1StringView(end.data(), static_cast<qsizetype>(end.size())), position);
            auto const stop = found < 0 ? text.size() : found + static_cast<qsizetype>(end.size());
            setFormat(static_cast<int>(position), static_cast<int>(stop - position), m_comment);
            if (found < 0)
                break;
            inside = -1;
            position = stop;
            continue;
        }
        auto const block = std::ranges::find_if(m_language.blocks, [&](auto const& candidate) {
            return startsAt(text, position, candidate.first);
        });
        if (block != m_language.blocks.end()) {
            auto const length = static_cast<int>(block->first.size());
            setFormat(static_cast<int>(position), length, m_comment);
            inside = static_cast<int>(block - m_language.blocks.begin());
            position += length;
            continue;
        }
        position = highlightToken(text, position);
    }
    setCurrentBlockState(inside);
}

qsizetype SyntaxHighlighter::highlightToken(QString const& text, qsizetype start) {
    for (auto const comment : m_language.lineComments)
        if (startsAt(text, start, comment)) {
            setFormat(static_cast<int>(start), static_cast<int>(text.size() - start), m_comment);
            return text.size();
        }
    auto const c = text[start];
    if (c.unicode() < 0x80 &&
        m_language.quotes.find(static_cast<char>(c.unicode())) != std::string_view::npos) {
        auto const end = endOfQuote(text, start);
        setFormat(static_cast<int>(start), static_cast<int>(end - start), m_string);
        return end;
    }
    if (isWordCharacter(c) || c == u'#' || c == u'@' || c == u'!' || (m_language.isMarkup && c == u'<'))
        return highlightWord(text, start);
    return start + 1;
}

qsizetype SyntaxHighlighter::highlightWord(QString const& text, qsizetype start) {
    auto end = start + 1;
    if (m_language.isMarkup && text[start] == u'<' && end < text.size() &&
        (text[end] == u'/' || text[end] == u'?'))
        ++end;
    auto const isNumber = text[start].isDigit();
    while (end < text.size() && (isWordCharacter(text[end]) || (isNumber && text[end] == u'.') ||
                                 (m_language.isMarkup && (text[end] == u'-' || text[end] == u':'))))
        ++end;
    auto const length = static_cast<int>(end - start);
    auto const word = text.sliced(start, end - start);
    auto const looked = m_language.ignoresCase ? word.toLower() : word;
    if (m_language.isMarkup && word.startsWith(u'<'))
        setFormat(static_cast<int>(start), length, m_tag);
    else if (isNumber)
        setFormat(static_cast<int>(start), length, m_number);
    else if (std::binary_search(m_language.keywords.begin(), m_language.keywords.end(), looked))
        setFormat(static_cast<int>(start), length, m_keyword);
    return end;
}

qsizetype SyntaxHighlighter::endOfQuote(QString const& text, qsizetype start) {
    for (auto i = start + 1; i < text.size(); ++i) {
        if (text[i] == u'\\')
            ++i;
        else if (text[i] == text[start])
            return i + 1;
    }
    return text.size();
}

} // namespace taliro
