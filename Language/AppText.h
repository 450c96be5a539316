#pragma once
// Texts of our own that the numbered tables do not hold (notes, units,
// hints), in English and in Chinese, chosen by the language in force at each
// call like languageText().

#include <QString>

enum class AppText {
    MacroNamePlaceholder,
    MillisecondsUnit,
    MacroRecordingHint,
    MacroSaveFailed,
    MacroStoreTooManyMacros,  // %1 macros in the library, %2 the limit, %3 over
    MacroStoreTooLong,        // %1 bytes needed, %2 the limit, %3 over
    MacroStoreTooManySteps,   // %1 bytes counted, %2 the limit, %3 over

    // The window's own buttons and the tray menu.
    Quit,
    NoKeyboardConnected,
    NoNotifications,

    // Exchange files: what was exported or imported, and why not. English
    // sentences that follow another one open with their space.
    QuotedName,            // %1 a file or mode name
    KeyAssignmentCountOne,  // %1 the number
    KeyAssignmentCountMany,
    KeyColourCountOne,
    KeyColourCountMany,
    DroppedRowsOne,  // %1 the number of rows left out
    DroppedRowsMany,
    ExportProfileUnreadable,
    ExportProfileUnwritable,  // %1 file, %2 reason
    ExportProfileDone,        // %1 counted rows, %2 file
    ImportProfileStoreClosed,  // %1 file
    ImportSaveFailed,          // %1 file, %2 reason
    ImportProfileDone,         // %1 counted rows, %2 file, %3 profile
    ExportLightNoneChosen,
    ExportLightUnreadable,  // %1 mode
    ExportLightUnwritable,  // %1 file, %2 reason
    ExportLightDone,        // %1 mode, %2 counted colours, %3 file
    ImportLightStoreClosed,
    ImportLightDone,  // %1 mode, %2 counted colours, %3 file

    // Why an imported file is refused; each names the file as %1.
    FileNothingChanged,
    FileChooseExported,
    FileCannotOpen,     // %2 reason
    FileNotADatabase,
    FileDamaged,        // %2 reason
    FileMissingTable,   // %2 table
    FileMissingColumn,  // %2 column
    FileNotANumber,     // %2 value, %3 column
    FileNoProfileRows,
    FileNoLightMode,
    FileNoKnownKeys,  // %1 number of keys, %2 file

    // The data folder's stores: what they hold and what went wrong.
    StoreLocalContents,
    StoreDeviceContents,
    StoreFixFolder,         // followed by the shell command
    StoreMovedAsideDamaged,  // %1 contents, %2 kept file
    StoreMovedAsideVersion,  // %1 contents, %2 kept file
    StoreBusy,               // %1 contents, %2 file
    StoreReadOnly,           // %1 contents, %2 folder
    StoreMoveFailed,         // %1 contents, %2 file, %3 reason
    StoreOpenFailed,         // %1 contents, %2 file, %3 reason

    // Saves and reads that failed, links and guides.
    KeyAssignmentSaveFailed,
    KeyLockSaveFailed,
    KeyColoursSaveFailed,
    LightColoursReadFailed,
    GuideCopyFailed,  // %1 folder, %2 reason
    LinkOpenFailed,   // %1 address
    KeyCannotBeSet,

    // Access to the keyboards and to keys typed in other windows.
    InputCaptureAdvice,       // %1 the group
    PermissionOpening,        // %1 keyboard, %2 device node
    PermissionTheKeyboard,
    PermissionWithAdvice,     // %1 the doctor's advice
    PermissionUdevRule,       // %1 the shell commands

    // The system page's "Switch profile by application" section.
    AppRulesTitle,
    AppRulesHint,
    AppRulesUnavailable,
    AppRulesNoKeyboard,
    AppRulesAppPlaceholder,
    AppRulesAdd,
    AppRulesRemove,
    AppRulesOtherwise,
    AppRulesLeave,
    AppRulesSaveFailed,

    // The macro window's step editor.
    StepDelete,
    StepMoveUp,
    StepMoveDown,
    StepUndo,
    StepRedo,
    StepTextButton,
    StepInsertBefore,
    StepInsertAfter,
    StepInsertDelay,
    StepInsertKeyPress,
    StepInsertLeftClick,
    StepInsertMiddleClick,
    StepInsertRightClick,
    StepNeverReleased,
    StepNeverPressed,
    StepDelayTooLong,
    StepDelayRange,
    StepStoreFigure,         // %1 bytes this macro uses, %2 bytes left for it
    StepSaveNeverReleased,   // %1 the step's number
    StepSaveNeverPressed,    // %1 the step's number
    StepSaveDelayTooLong,    // %1 the step's number
    StepSaveTooLong,         // %1 bytes needed, %2 left, %3 over
    StepSaveTooManySteps,    // %1 bytes counted, %2 the limit, %3 over
    StepSaveTooManyMacros,   // %1 the limit
    StepKeyDialogTitle,
    StepKeyDialogHint,
    StepKeyDialogInsert,
    StepDialogCancel,
    StepTextDialogTitle,
    StepTextDialogHint,
    StepTextCopy,
    StepTextApply,
    StepTextBadLine,  // %1 the line's number, %2 the line

    // Lists with no rows yet
    MacroListEmpty,      // %1 the new macro button's text
    UserLightListEmpty,  // %1 the menu's add entry

    Count  // not a text: the number of them
};

QString appText(AppText id);
// The text in the given language (kLanguageEnglish or kLanguageChinese).
QString appText(AppText id, int language);
