#pragma once

#include <QIcon>
#include <QWidget>

namespace workbench {

/// The signs of the workbench's own buttons and states, which never stand without a word.
enum class Symbol {
    Connect, ///< two dots and a line between them
    Open,    ///< a folder
    Record,  ///< a dot in a ring
    Play,
    Pause,
    Stop,
    Step,
    Close,
    Yes,      ///< a filled circle with a tick
    No,       ///< an empty circle
    Attention ///< a triangle with an exclamation mark
};

/// Drawn when it is shown, in the application's text colour of that moment: as well visible on a
/// dark palette as on a light one, and as well as the word beside it when it cannot be used.
QIcon symbolIcon(Symbol symbol);

/// A symbol as large as the letters beside it.
class SymbolLabel : public QWidget {
    Q_OBJECT

public:
    explicit SymbolLabel(QWidget* parent = nullptr);

    void setSymbol(Symbol symbol);
    Symbol symbol() const { return m_symbol; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol = Symbol::No;
};

} // namespace workbench
