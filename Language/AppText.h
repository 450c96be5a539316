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
    GuideCopyFailed,  // %1 folder, %2 reason
    LinkOpenFailed,   // %1 address
    KeyCannotBeSet,

    // Access to the keyboards and to keys typed in other windows.
    InputCaptureAdvice,       // %1 the group
    PermissionOpening,        // %1 keyboard, %2 device node
    PermissionTheKeyboard,
    PermissionWithAdvice,     // %1 the doctor's advice
    PermissionUdevRule,       // %1 the shell commands

    // Lists with no rows yet
    MacroListEmpty,      // %1 the new macro button's text
    UserLightListEmpty,  // %1 the menu's add entry

    Count  // not a text: the number of them
};

QString appText(AppText id);
// The text in the given language (kLanguageEnglish or kLanguageChinese).
QString appText(AppText id, int language);
