#pragma once

#include <QSyntaxHighlighter>

#include <string_view>

namespace taliro {

/// What a language's texts are made of, as far as colouring goes.
struct Language {
    std::vector<std::string_view> lineComments; ///< what they begin with
    std::vector<std::pair<std::string_view, std::string_view>>
        blocks;              ///< comments or texts over several lines
    std::string_view quotes; ///< characters that enclose a text in a line
    QStringList keywords;
    bool ignoresCase = false;
    bool isMarkup = false; ///< tags and attributes instead of words
};

/// The language that files of the name are written in; null for prose and what is unknown.
Language const* languageOf(std::string_view name);

/// Colours comments, texts, numbers and the words of the language.
class SyntaxHighlighter : public QSyntaxHighlighter {
    Q_OBJECT

public:
    SyntaxHighlighter(Language const& language, QTextDocument* document);

protected:
    void highlightBlock(QString const& text) override;

private:
    qsizetype highlightToken(QString const& text, qsizetype start);
    qsizetype highlightWord(QString const& text, qsizetype start);
    /// The end of the text that begins at `start`, by the same quote that is not escaped.
    static qsizetype endOfQuote(QString const& text, qsizetype start);

    Language const& m_language;
    QTextCharFormat m_comment;
    QTextCharFormat m_string;
    QTextCharFormat m_number;
    QTextCharFormat m_keyword;
    QTextCharFormat m_tag;
};

} // namespace taliro
