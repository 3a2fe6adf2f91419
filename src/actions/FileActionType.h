#pragma once

#include <QString>

#include <functional>

/** What tells the file menu and the file actions of one type widget from those of the others. */
struct FileActionType {
    const char *pContext;          ///< Class name of the widget: the context its texts are translated in.
    const char *pTypeWord;         ///< In log lines.
    const char *pCoverItem;        ///< Menu entry that sets the preview picture.
    const char *pCoverDone;        ///< Notice after it.
    bool bOpensFile;               ///< "Open with Default App" does something.
    bool bFixedCoverHidesSettings; ///< No "File Settings" where the record says that its preview picture is fixed.
    bool bSettingsRounded;         ///< The corners of "File Settings" are cut round as those of the other sub-menus.

    /**
     * The text in the widget's own words. Most texts are those of every type and marked for pictures only: theirs holds
     * where the widget has none of its own.
     */
    QString text(const char *pSource) const;

    static const FileActionType &image();
    static const FileActionType &presentation();
    static const FileActionType &video();
    static const FileActionType &audio();
};

/** What a type widget does itself. Any of them may be empty. */
struct FileActionHooks {
    std::function<void()> beforeMenu;    ///< A player pauses.
    std::function<void()> beforeRemoval; ///< Lets go of the file before it is deleted.
    std::function<void()> setCover;      ///< The slot behind the entry that sets the preview picture.
    std::function<void()> refresh;       ///< The current file has a new preview picture.
};
