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
    MacroStepsUnreadInEditor,
    MacroStoreTooManyMacros,  // %1 macros in the library, %2 the limit, %3 over
    MacroStoreTooLong,        // %1 bytes needed, %2 the limit, %3 over
    MacroStoreTooManySteps,   // %1 bytes counted, %2 the limit, %3 over
    MacroStepCountOne,        // %1 the number of steps of a macro
    MacroStepCountMany,
    KeyCapMacro,     // %1 the macro's name, on a key's cap
    KeyCapDisabled,  // on the cap of a key that is turned off
    KeyMenuDisable,  // the key menu's entry that turns a key off

    // The reset questions and their results; %1 the profile's name.
    ResetProfileQuestion,
    ResetProfileLoses,
    ResetProfileButton,
    ResetProfileDone,
    ResetAllQuestion,
    ResetAllLoses,
    ResetAllButton,
    ResetAllDone,

    // Deleting a macro: %1 its name; the keys that play it.
    DeleteMacroQuestion,
    DeleteMacroKeys,  // %1 "Profile A: Escape, Caps Lock"
    DeleteMacroNoKeys,
    DeleteMacroButton,
    // The macro window's name field and its closing.
    MacroNameEmpty,
    MacroNameTooLong,  // %1 the longest name
    MacroUnsavedQuestion,
    MacroUnsavedLoses,  // %1 the number of steps
    MacroUnsavedDiscard,
    MacroUnsavedKeep,

    // The window's own buttons and the tray menu.
    Quit,
    ShowWindow,
    StartWithDesktop,
    AutostartFailed,  // %1 what failed
    NoKeyboardConnected,
    NoNotifications,
    CloseMessage,

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
    FileNotANumber,     // %2 value, %3 column, %4 row
    FileNoProfileRows,
    FileNoLightMode,
    FileNoKnownKeys,  // %1 number of keys, %2 file
    FileNotAFile,     // %2 what it is (one of the five below)
    FileKindFolder,
    FileKindPipe,
    FileKindDevice,
    FileKindSocket,
    FileKindSpecial,
    FileTooLarge,     // %2 its size, %3 the largest, both in MB
    FileTooManyRows,  // %2 rows, %3 table, %4 keys of the model
    FileOutOfRange,   // %2 row, %3 column, %4 value, %5 accepted range
    FileUnknownKind,  // %2 row, %3 the kind
    FileNameTooLong,  // %2 row, %3 column, %4 length, %5 the longest

    // The data folder's stores: what they hold and what went wrong.
    StoreLocalContents,
    StoreDeviceContents,
    StoreFixFolder,         // followed by the shell command
    StoreMovedAsideDamaged,  // %1 contents, %2 kept file
    StoreMovedAsideVersion,  // %1 contents, %2 kept file
    StoreBusy,               // %1 contents, %2 file
    StoreReadOnly,           // %1 contents, %2 folder
    StoreMoveFailed,         // %1 contents, %2 file, %3 reason
    StoreOpenFailed,
    StoreBusyHeld,      // %1 contents, %2 who holds it, %3 file
    StoreHolderOtherCopy,  // %1 process id
    StoreHolderProcess,    // %1 process id, %2 its name
    StoreDiskFull,      // %1 contents, %2 folder
    StoreNotAFolder,    // %1 contents, %2 folder
    StorePathTooLong,   // %1 contents, %2 folder
    StoreOperationFailed,  // %1 contents, %2 reason         // %1 contents, %2 file, %3 reason

    // Saves and reads that failed, links and guides.
    KeyAssignmentSaveFailed,
    KeyColoursSaveFailed,
    LightColoursReadFailed,
    SettingsReadFailed,  // %1 reason
    GuideCopyFailed,  // %1 folder, %2 reason
    LinkOpenFailed,   // %1 address
    KeyCannotBeSet,
    KeyboardNotAnswering,

    // Access to the keyboards and to keys typed in other windows.
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
    AppRulesKeptInTray,

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

    // The user light list and painting.
    UserLightImportTip,
    UserLightExportTip,
    UserLightDeleteTip,
    UserLightNameEmpty,
    UserLightDeleteQuestion,  // %1 the mode's name
    UserLightDeleteLoses,
    UserLightSavedToSlot,  // %1 the slot number
    UserLightOtherModel,   // %1 the keyboard connected
    UserLightAddFirst,     // %1 the menu's add entry

    // The window without a keyboard.
    ConnectYourKeyboard,
    ConnectYourKeyboardWhy,  // %1 what stands in the way

    // Restore points: the copy made before a change that takes settings
    // away, the result line's Undo, and the main menu's list of them.
    SnapshotFailed,  // %1 why, %2 the folder
    UndoButton,
    MacroDeleted,      // %1 the macro's name
    UserLightDeleted,  // %1 the light's name
    RestoreMenuItem,
    RestoreTitle,
    RestoreNone,
    RestoreNoneDetail,
    RestoreButton,
    RestoreQuestion,  // %1 when it was saved
    RestoreReplaces,
    RestoreDone,    // %1 when it was saved
    RestoreFailed,  // %1 why
    RestoreUnreadable,  // %1 why, on the snapshot's line
    SnapshotResetCurrent,
    SnapshotResetAll,
    SnapshotImportKeys,
    SnapshotImportLight,
    SnapshotDeleteMacro,
    SnapshotDeleteLight,
    SnapshotBeforeRestore,
    SnapshotOther,  // %1 the kind as named in the file
    SnapshotProfilesOne,  // %1 the number of profiles with keys of their own
    SnapshotProfilesMany,
    SnapshotMacrosOne,  // %1 the number of macros
    SnapshotMacrosMany,
    SnapshotLightsOne,  // %1 the number of user lights
    SnapshotLightsMany,
    // A macro store that would carry unread steps.
    MacroStepsUnread,  // %1 the macro's name, %2 the reason
    // Uploads the keyboard did not confirm.
    UploadNotConfirmed,    // %1 the upload, one of the five below
    UploadKeyTable,        // %1 the profile's name
    UploadLightMode,       // %1 the profile's name
    UploadSystemSettings,  // %1 the profile's name
    UploadUserLightSlot,   // %1 the slot number
    UploadMacroLibrary,

    Count  // not a text: the number of them
};

QString appText(AppText id);
// The text in the given language (kLanguageEnglish or kLanguageChinese).
QString appText(AppText id, int language);
