#pragma once

#include "foundation/Subscription.h"
#include "foundation/Url.h"

#include <QStackedWidget>

class QPlainTextEdit;
class QScrollBar;
class QTextBrowser;

namespace taliro {

class SyntaxHighlighter;
struct Platform;
struct TextPreview;

/// The start of a text: source in colours, Markdown laid out, anything else as it is.
class TextPreviewPane : public QStackedWidget {
    Q_OBJECT

public:
    explicit TextPreviewPane(Platform& platform, QWidget* parent = nullptr);

    void setFile(Url const& file, bool isMarkdown);
    void clear();
    QScrollBar* verticalScrollBar() const;
    void copy();

Q_SIGNALS:
    /// What there is to say of the text: its encoding, and that it is not all.
    void described(QString const& facts);
    void failed();

private:
    void show(TextPreview const& preview, Url const& file, bool isMarkdown);

    Platform& m_platform;
    QPlainTextEdit* m_plain;
    QTextBrowser* m_markdown;
    SyntaxHighlighter* m_highlighter = nullptr;
    Subscription m_request;
};

} // namespace taliro
