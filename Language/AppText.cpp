#include "Language/AppText.h"

#include "Common/Globals.h"

#include <array>
#include <utility>

namespace {

struct Texts {
    AppText id;
    const char* english;
    const char* chinese;  // UTF-8
};

constexpr std::array kTexts{
    Texts{AppText::MacroNamePlaceholder, "Macro name", "宏名称"},
    Texts{AppText::MillisecondsUnit, "ms", "毫秒"},
    Texts{AppText::MacroRecordingHint, "Recording: press keys, or click in this window.",
          "正在录制：请按键，或在此窗口内点击。"},
    Texts{AppText::MacroSaveFailed, "The macro could not be saved. Check that the data folder is writable, then save again.",
          "宏未能保存。请检查数据文件夹是否可写，然后再次保存。"},
    Texts{AppText::MacroStepsUnreadInEditor,
          "This macro's steps could not be read, so it cannot be saved here: saving would erase them. "
          "Close this window and open the macro again.",
          "无法读取此宏的步骤，因此不能在此保存：保存会清除它们。请关闭此窗口后重新打开该宏。"},
    Texts{AppText::MacroStoreTooManyMacros,
          "Nothing was sent to the keyboard: the library has %1 macros, and the keyboard holds %2. "
          "Delete %3 of them, then save a macro again.",
          "未向键盘发送任何内容：宏库中有 %1 个宏，键盘最多保存 %2 个。请删除 %3 个宏，然后重新保存宏。"},
    Texts{AppText::MacroStoreTooLong,
          "Nothing was sent to the keyboard: the macros need %1 bytes of its %2 (%3 bytes over). "
          "Delete or shorten macros, then save a macro again.",
          "未向键盘发送任何内容：这些宏需要 %1 字节，键盘只有 %2 字节（超出 %3 字节）。请删除或缩短宏，然后重新保存宏。"},
    Texts{AppText::MacroStoreTooManySteps,
          "Nothing was sent to the keyboard: the macros count %1 of their %2 bytes (%3 over). "
          "Delete or shorten macros, then save a macro again.",
          "未向键盘发送任何内容：这些宏计为 %1 字节，上限为 %2 字节（超出 %3 字节）。请删除或缩短宏，然后重新保存宏。"},
    Texts{AppText::MacroStepCountOne, "%1 step", "%1 步"},
    Texts{AppText::MacroStepCountMany, "%1 steps", "%1 步"},
    Texts{AppText::KeyCapMacro, "M: %1", "宏：%1"},
    Texts{AppText::KeyCapDisabled, "Off", "禁用"},
    Texts{AppText::KeyMenuDisable, "Disable", "禁用按键"},
    Texts{AppText::ResetProfileQuestion, "Reset %1?", "重置%1？"},
    Texts{AppText::ResetProfileLoses, "Its key assignments, light mode and key locks go back to the defaults. "
          "You can undo this from the line that follows, or later with Restore settings\u2026",
          "它的按键设置、灯光模式和按键锁定将恢复为默认值。之后可在随后出现的提示行中撤销，或稍后通过\u201c恢复设置\u2026\u201d恢复。"},
    Texts{AppText::ResetProfileButton, "Reset %1", "重置%1"},
    Texts{AppText::ResetProfileDone, "%1 is back to its defaults.", "%1已恢复为默认设置。"},
    Texts{AppText::ResetAllQuestion, "Reset everything?", "全部重置？"},
    Texts{AppText::ResetAllLoses,
          "All profiles, macros and your light modes are deleted from this computer and the keyboard. "
          "You can undo this from the line that follows, or later with Restore settings\u2026",
          "所有模式、宏和您的灯光模式都将从这台电脑和键盘上删除。之后可在随后出现的提示行中撤销，或稍后通过\u201c恢复设置\u2026\u201d恢复。"},
    Texts{AppText::ResetAllButton, "Reset Everything", "全部重置"},
    Texts{AppText::DeleteMacroQuestion, "Delete the macro \"%1\"?", "删除宏“%1”？"},
    Texts{AppText::DeleteMacroKeys, "These keys play it and go back to their own function: %1.",
          "以下按键使用此宏，将恢复为按键本身的功能：%1。"},
    Texts{AppText::DeleteMacroNoKeys, "No key plays it.", "没有按键使用此宏。"},
    Texts{AppText::DeleteMacroButton, "Delete", "删除"},
    Texts{AppText::MacroNameEmpty, "Give the macro a name.", "请输入宏名称。"},
    Texts{AppText::MacroNameTooLong, "Names are at most %1 characters.", "名称最多 %1 个字符。"},
    Texts{AppText::MacroUnsavedQuestion, "Close without saving?", "不保存就关闭？"},
    Texts{AppText::MacroUnsavedLoses, "The %1 recorded steps are not saved and will be lost.",
          "录制的 %1 个步骤尚未保存，关闭后将丢失。"},
    Texts{AppText::MacroUnsavedDiscard, "Close Without Saving", "不保存并关闭"},
    Texts{AppText::MacroUnsavedKeep, "Keep Editing", "继续编辑"},
    Texts{AppText::ResetAllDone, "Everything is reset: profiles, macros and light modes are back to the defaults.",
          "已全部重置：模式、宏和灯光模式均已恢复为默认值。"},
    // The window's own buttons and the tray menu.
    Texts{AppText::Quit, "Quit", "退出"},
    Texts{AppText::ShowWindow, "Show Orvane Keyboard Studio", "显示 Orvane Keyboard Studio"},
    Texts{AppText::StartWithDesktop, "Start with the desktop", "随桌面启动"},
    Texts{AppText::AutostartFailed, "The start with the desktop could not be changed (%1). Check that your home folder "
                                    "is writable, then try again.",
          "未能更改随桌面启动设置（%1）。请检查主文件夹是否可写，然后重试。"},
    Texts{AppText::NoKeyboardConnected, "No keyboard connected", "未连接键盘"},
    Texts{AppText::NoNotifications, "No notifications", "没有通知"},
    Texts{AppText::CloseMessage, "Close this message", "关闭此消息"},

    // Exchange files.
    Texts{AppText::QuotedName, "\"%1\"", "“%1”"},
    Texts{AppText::KeyAssignmentCountOne, "%1 key assignment", "%1 项按键设置"},
    Texts{AppText::KeyAssignmentCountMany, "%1 key assignments", "%1 项按键设置"},
    Texts{AppText::KeyColourCountOne, "%1 key colour", "%1 个按键颜色"},
    Texts{AppText::KeyColourCountMany, "%1 key colours", "%1 个按键颜色"},
    Texts{AppText::DroppedRowsOne, " %1 row was left out: its key is not on this keyboard.",
          "有 %1 行未导入：其按键不在此键盘上。"},
    Texts{AppText::DroppedRowsMany, " %1 rows were left out: their keys are not on this keyboard.",
          "有 %1 行未导入：其按键不在此键盘上。"},
    Texts{AppText::ExportProfileUnreadable,
          "The key assignments of this profile could not be read, so nothing was exported. "
          "Connect the keyboard again and retry.",
          "无法读取此模式的按键设置，未导出任何内容。请重新连接键盘后再试。"},
    Texts{AppText::ExportProfileUnwritable,
          "%1 could not be written (%2). Choose a folder you may write to, or remove a file of "
          "that name that is not a profile file, and try again.",
          "无法写入%1（%2）。请选择有写入权限的文件夹，或删除同名但并非配置文件的文件，然后重试。"},
    Texts{AppText::ExportProfileDone, "Exported %1 to %2.", "已将 %1导出到%2。"},
    Texts{AppText::ImportProfileStoreClosed,
          "Your keyboard's settings are not open, so %1 was not imported. Connect the keyboard and try again.",
          "键盘设置未打开，%1未导入。请连接键盘后重试。"},
    Texts{AppText::ImportSaveFailed, "%1 could not be saved (%2). Nothing was changed; try again.",
          "无法保存%1（%2）。未做任何更改，请重试。"},
    Texts{AppText::ImportProfileDone, "Imported %1 from %2 into %3.", "已从%2导入 %1到%3。"},
    Texts{AppText::ExportLightNoneChosen,
          "No light mode is chosen, so nothing was exported. Choose one in the list of user lights and try again.",
          "未选择灯效，未导出任何内容。请在自定义灯光列表中选择一个灯效后重试。"},
    Texts{AppText::ExportLightUnreadable,
          "The colours of %1 could not be read, so nothing was exported. Connect the keyboard again and retry.",
          "无法读取%1的颜色，未导出任何内容。请重新连接键盘后再试。"},
    Texts{AppText::ExportLightUnwritable,
          "%1 could not be written (%2). Choose a folder you may write to, or remove a file of "
          "that name that is not a light file, and try again.",
          "无法写入%1（%2）。请选择有写入权限的文件夹，或删除同名但并非灯效文件的文件，然后重试。"},
    Texts{AppText::ExportLightDone, "Exported the light mode %1 with %2 to %3.", "已将灯效%1（%2）导出到%3。"},
    Texts{AppText::ImportLightStoreClosed,
          "Your keyboard's settings are not open, so nothing can be imported. Connect the keyboard and try again.",
          "键盘设置未打开，无法导入。请连接键盘后重试。"},
    Texts{AppText::ImportLightDone, "Imported the light mode %1 with %2 from %3.", "已从%3导入灯效%1（%2）。"},

    // Refused files.
    Texts{AppText::FileNothingChanged, " Nothing was changed.", "未做任何更改。"},
    Texts{AppText::FileChooseExported, " Choose a file exported by Orvane Keyboard Studio.",
          "请选择由 Orvane Keyboard Studio 导出的文件。"},
    Texts{AppText::FileCannotOpen,
          "%1 could not be read (%2). Check that the file is there and that you may read it, then try again.",
          "无法读取%1（%2）。请确认文件存在且你有读取权限，然后重试。"},
    Texts{AppText::FileNotADatabase, "%1 is not an exchange file: it is not a database at all.",
          "%1不是可导入的文件：它根本不是数据库。"},
    Texts{AppText::FileDamaged, "%1 is damaged (%2). Export it again from the computer it came from.",
          "%1已损坏（%2）。请在导出它的电脑上重新导出。"},
    Texts{AppText::FileMissingTable, "%1 is not the right kind of exchange file: it has no table %2.",
          "%1不是此类可导入的文件：缺少数据表 %2。"},
    Texts{AppText::FileMissingColumn, "%1 is not a complete exchange file: it has no column %2.",
          "%1不是完整的可导入文件：缺少列 %2。"},
    Texts{AppText::FileNotANumber,
          "%1 is damaged: row %4 holds \"%2\" in %3, where a whole number belongs. Export it again.",
          "%1已损坏：第 %4 行的 %3 中应为整数，却是“%2”。请重新导出。"},
    Texts{AppText::FileNoProfileRows,
          "%1 holds no key assignments to import (none under profile 1). Export the profile again "
          "and import the new file.",
          "%1中没有可导入的按键设置（模式 1 下没有任何设置）。请重新导出配置，再导入新文件。"},
    Texts{AppText::FileNoLightMode,
          "%1 holds no light mode: its table \"t_lightdata\" is empty. Export the light mode again "
          "and import the new file.",
          "%1中没有灯效：其数据表 \"t_lightdata\" 为空。请重新导出灯效，再导入新文件。"},
    Texts{AppText::FileNoKnownKeys,
          "None of the %1 keys in %2 is on this keyboard: the file was made for another model. "
          "Import it with that keyboard connected.",
          "%2中的 %1 个按键都不在此键盘上：该文件是为其他型号制作的。请连接那款键盘后再导入。"},
    Texts{AppText::FileNotAFile, "%1 is not a file but %2, so it was not opened. Choose an exported file.",
          "%1不是文件，而是%2，因此未打开。请选择导出的文件。"},
    Texts{AppText::FileKindFolder, "a folder", "文件夹"},
    Texts{AppText::FileKindPipe, "a pipe", "管道"},
    Texts{AppText::FileKindDevice, "a device", "设备"},
    Texts{AppText::FileKindSocket, "a socket", "套接字"},
    Texts{AppText::FileKindSpecial, "a special file", "特殊文件"},
    Texts{AppText::FileTooLarge,
          "%1 is %2 MB, larger than any exchange file can be (at most %3 MB), so it was not read. "
          "Choose an exported file.",
          "%1有 %2 MB，超过可导入文件的上限（%3 MB），因此未读取。请选择导出的文件。"},
    Texts{AppText::FileTooManyRows,
          "%1 holds %2 rows in %3, more than this keyboard has keys (%4). Export it again.",
          "%1的 %3 中有 %2 行，多于此键盘的按键数（%4）。请重新导出。"},
    Texts{AppText::FileOutOfRange,
          "%1 is damaged: row %2 holds %4 in %3, which the keyboard cannot hold (%5). Export it again.",
          "%1已损坏：第 %2 行的 %3 为 %4，键盘无法保存（应为 %5）。请重新导出。"},
    Texts{AppText::FileUnknownKind,
          "%1 was made by another program: row %2 has the assignment kind %3, which this app does not know.",
          "%1由其他程序制作：第 %2 行的设置类型 %3 本应用无法识别。"},
    Texts{AppText::FileNameTooLong,
          "%1 is damaged: row %2 holds a name of %4 characters in %3, longer than the %5 the window shows. "
          "Export it again.",
          "%1已损坏：第 %2 行的 %3 中名称长 %4 个字符，超过窗口可显示的 %5 个。请重新导出。"},

    // The data folder's stores.
    Texts{AppText::StoreLocalContents, "This computer's settings (language, keyboard picture colours)",
          "本机设置（语言、键盘图片颜色）"},
    Texts{AppText::StoreDeviceContents, "Your keyboard's settings (profiles, keys, lights and macros)",
          "键盘设置（模式、按键、灯效和宏）"},
    Texts{AppText::StoreFixFolder, "To fix it, give yourself write access to the folder and start the app again:\n",
          "解决方法：为自己授予该文件夹的写入权限，然后重新启动本应用：\n"},
    Texts{AppText::StoreMovedAsideDamaged,
          "%1 could not be read because the file was damaged. The damaged file was kept as "
          "%2, and a new one with the defaults is in use.",
          "%1：文件已损坏，无法读取。损坏的文件已保留为 %2，现使用一个默认设置的新文件。"},
    Texts{AppText::StoreMovedAsideVersion,
          "%1 were in a file made for another version of the app, so a new file was made. "
          "The old file was kept as %2.",
          "%1：所在文件来自本应用的其他版本，因此已新建文件。旧文件已保留为 %2。"},
    Texts{AppText::StoreBusy,
          "%1 are in use by another program, perhaps another copy of Orvane Keyboard Studio "
          "(%2), so they are left as they are for now. Close the other program and start the app again.",
          "%1正被另一个程序使用（可能是另一个 Orvane Keyboard Studio，%2），暂时保持不变。"
          "请关闭该程序，然后重新启动本应用。"},
    Texts{AppText::StoreReadOnly,
          "%1 cannot be saved: Orvane Keyboard Studio may not write in %2, so changes you make now are not kept. ",
          "%1无法保存：Orvane Keyboard Studio 无权写入 %2，现在所做的更改不会保留。"},
    Texts{AppText::StoreMoveFailed,
          "%1 cannot be used: the file %2 had to make room for a new one but could not be moved aside (%3). "
          "Nothing was deleted. ",
          "%1无法使用：文件 %2 需要移开以便新建文件，但移动失败（%3）。没有删除任何内容。"},
    Texts{AppText::StoreBusyHeld,
          "%1 are locked by %2 (%3), so what you change now is not saved. Close it, then make the change again.",
          "%1被%2锁定（%3），现在所做的更改不会保存。请关闭它，然后重新更改。"},
    Texts{AppText::StoreHolderOtherCopy, "another copy of Orvane Keyboard Studio (process %1)",
          "另一个 Orvane Keyboard Studio（进程 %1）"},
    Texts{AppText::StoreHolderProcess, "process %1 (%2)", "进程 %1（%2）"},
    Texts{AppText::StoreDiskFull,
          "%1 could not be saved: the disk that holds %2 is full. Free some space on it, then make the change again.",
          "%1无法保存：%2 所在的磁盘已满。请释放一些空间，然后重新更改。"},
    Texts{AppText::StoreNotAFolder,
          "%1 cannot be kept: %2 is not a folder (a part of it is a file or a device). "
          "Start the app with --data-dir naming a folder.",
          "%1无法保存：%2 不是文件夹（其中一部分是文件或设备）。请用 --data-dir 指定一个文件夹来启动本应用。"},
    Texts{AppText::StorePathTooLong,
          "%1 cannot be kept: the path %2 is longer than the system allows. "
          "Start the app with --data-dir naming a shorter path.",
          "%1无法保存：路径 %2 超出系统允许的长度。请用 --data-dir 指定较短的路径来启动本应用。"},
    Texts{AppText::StoreOperationFailed,
          "%1 could not be saved (%2), so your last change was not kept and nothing was sent to the keyboard. "
          "Try again.",
          "%1无法保存（%2），最近一次更改未保留，也未发送到键盘。请重试。"},
    Texts{AppText::StoreOpenFailed, "%1 could not be opened (%2): %3. Check the disk and start the app again.",
          "%1无法打开（%2）：%3。请检查磁盘，然后重新启动本应用。"},

    // Saves and reads that failed, links and guides.
    Texts{AppText::KeyAssignmentSaveFailed,
          "The key assignment could not be saved. Check that the data folder is writable, then try again.",
          "按键设置未能保存。请检查数据文件夹是否可写，然后重试。"},
    Texts{AppText::KeyColoursSaveFailed,
          "The key colours could not be saved, so the picture shows colours the database does not hold. "
          "Check that the data folder can be written, then paint the keys again.",
          "按键颜色未能保存，图中的颜色并未存入数据库。请检查数据文件夹是否可写，然后重新为按键上色。"},
    Texts{AppText::LightColoursReadFailed,
          "The mode's colours could not be read from the database, so nothing was sent to the keyboard. "
          "Reconnect the keyboard and save the mode again.",
          "无法从数据库读取该灯效的颜色，未向键盘发送任何内容。请重新连接键盘，然后再次保存该灯效。"},
    Texts{AppText::SettingsReadFailed,
          "The profile's light mode and key locks could not be read from the database (%1), so nothing was sent "
          "to the keyboard: it keeps its own. Reconnect the keyboard to try again.",
          "无法从数据库读取该配置的灯效和按键锁定（%1），未向键盘发送任何内容：键盘保留其原有设置。请重新连接键盘后重试。"},
    Texts{AppText::GuideCopyFailed,
          "The user guide could not be copied to %1 (%2). Free some space or make the folder writable, "
          "then click the guide button again.",
          "用户指南未能复制到 %1（%2）。请释放磁盘空间或让该文件夹可写，然后再次点击指南按钮。"},
    Texts{AppText::LinkOpenFailed,
          "No program could be started to open %1. Open it yourself, or set a default browser and PDF viewer "
          "for your desktop.",
          "无法启动任何程序来打开 %1。请手动打开，或为桌面设置默认浏览器和 PDF 阅读器。"},
    Texts{AppText::KeyCannotBeSet, "This key cannot be set; press another", "无法设置此按键，请换一个"},
    Texts{AppText::KeyboardNotAnswering, "The keyboard is not answering: unplug it and plug it in again",
          "键盘没有响应：请拔下键盘，然后重新插入"},

    // Access to the keyboards and to keys typed in other windows.
    Texts{AppText::PermissionOpening, "Orvane Keyboard Studio is not allowed to talk to %1 (%2). ",
          "Orvane Keyboard Studio 无权与%1（%2）通信。"},
    Texts{AppText::PermissionTheKeyboard, "the keyboard", "键盘"},
    Texts{AppText::PermissionWithAdvice,
          "What stands in the way, and the command that fixes each:\n%1\n"
          "Run \"orvane --doctor\" in a terminal for the whole check.",
          "存在以下问题，每项附有解决命令：\n%1\n在终端运行 \"orvane --doctor\" 可做完整检查。"},
    Texts{AppText::PermissionUdevRule,
          "Linux gives access to keyboards only through a udev rule. Install ours once, "
          "then unplug the keyboard and plug it in again:\n%1\n"
          "Run \"orvane --doctor\" in a terminal for the whole check.",
          "Linux 只通过 udev 规则开放键盘的访问权限。请安装一次本应用的规则，然后拔下键盘再重新插上：\n%1\n"
          "在终端运行 \"orvane --doctor\" 可做完整检查。"},
    // The macro window's step editor.
    Texts{AppText::AppRulesTitle, "Switch profile by application", "按应用切换模式"},
    Texts{AppText::AppRulesHint, "When an application comes to the front, the keyboard takes its profile.",
          "应用切换到前台时，键盘改用它的模式。"},
    Texts{AppText::AppRulesUnavailable,
          "This desktop does not tell applications which window is in front, so profiles can't follow it here.",
          "此桌面不告知应用哪个窗口在前台，因此模式无法在这里跟随应用切换。"},
    Texts{AppText::AppRulesNoKeyboard, "Connect the keyboard to edit its rules.", "请连接键盘以编辑它的规则。"},
    Texts{AppText::AppRulesAppPlaceholder, "Application", "应用"},
    Texts{AppText::AppRulesAdd, "Add", "添加"},
    Texts{AppText::AppRulesRemove, "Remove this rule", "删除此规则"},
    Texts{AppText::AppRulesOtherwise, "Otherwise", "其他应用"},
    Texts{AppText::AppRulesLeave, "Leave as it is", "保持不变"},
    Texts{AppText::AppRulesSaveFailed,
          "The rules could not be saved; they are as before. Check that the data folder can be written, then try again.",
          "规则未能保存，仍保持原样。请确认数据文件夹可写入，然后重试。"},
    Texts{AppText::AppRulesKeptInTray,
          "Orvane Keyboard Studio keeps running here, so the keyboard's profile goes on following the application in "
          "front. Quit it from this icon's menu.",
          "Orvane Keyboard Studio 仍在这里运行，键盘的模式会继续跟随前台应用切换。可从此图标的菜单退出。"},
    Texts{AppText::StepDelete, "Delete", "删除"},
    Texts{AppText::StepMoveUp, "Move up", "上移"},
    Texts{AppText::StepMoveDown, "Move down", "下移"},
    Texts{AppText::StepUndo, "Undo", "撤销"},
    Texts{AppText::StepRedo, "Redo", "重做"},
    Texts{AppText::StepTextButton, "Text", "文本"},
    Texts{AppText::StepInsertBefore, "Insert before", "在前面插入"},
    Texts{AppText::StepInsertAfter, "Insert after", "在后面插入"},
    Texts{AppText::StepInsertDelay, "Delay", "延时"},
    Texts{AppText::StepInsertKeyPress, "Key press...", "按键..."},
    Texts{AppText::StepInsertLeftClick, "Left click", "左键单击"},
    Texts{AppText::StepInsertMiddleClick, "Middle click", "中键单击"},
    Texts{AppText::StepInsertRightClick, "Right click", "右键单击"},
    Texts{AppText::StepNeverReleased, "never released", "没有松开"},
    Texts{AppText::StepNeverPressed, "never pressed", "没有按下"},
    Texts{AppText::StepDelayTooLong, "over 65535 ms", "超过 65535 毫秒"},
    Texts{AppText::StepDelayRange, "A delay is a whole number of milliseconds from 1 to 65535.",
          "延时须为 1 到 65535 之间的整数毫秒。"},
    Texts{AppText::StepStoreFigure, "Uses %1 of %2 bytes", "占用 %1 / %2 字节"},
    Texts{AppText::StepSaveNeverReleased,
          "Not saved: step %1 presses a key or button that nothing releases. Insert its release after it, "
          "or delete the step, then save again.",
          "未保存：第 %1 步按下的键或按钮没有松开。请在其后插入松开，或删除此步，然后再次保存。"},
    Texts{AppText::StepSaveNeverPressed,
          "Not saved: step %1 releases a key or button that nothing pressed. Insert its press before it, "
          "or delete the step, then save again.",
          "未保存：第 %1 步松开的键或按钮之前没有按下。请在其前插入按下，或删除此步，然后再次保存。"},
    Texts{AppText::StepSaveDelayTooLong,
          "Not saved: the delay of step %1 is longer than the keyboard's 65535 ms. Double-click it to "
          "shorten it, then save again.",
          "未保存：第 %1 步的延时超过键盘允许的 65535 毫秒。请双击修改，然后再次保存。"},
    Texts{AppText::StepSaveTooLong,
          "Not saved: this macro needs %1 bytes, and the keyboard has %2 left for it (%3 over). "
          "Delete steps, then save again.",
          "未保存：此宏需要 %1 字节，键盘只剩 %2 字节（超出 %3 字节）。请删除一些步骤，然后再次保存。"},
    Texts{AppText::StepSaveTooManySteps,
          "Not saved: the macros would count %1 of their %2 bytes (%3 over). Delete steps, then save again.",
          "未保存：这些宏将计为 %1 字节，上限为 %2 字节（超出 %3 字节）。请删除一些步骤，然后再次保存。"},
    Texts{AppText::StepSaveTooManyMacros, "Not saved: the keyboard holds %1 macros. Delete one, then save again.",
          "未保存：键盘最多保存 %1 个宏。请删除一个宏，然后再次保存。"},
    Texts{AppText::StepKeyDialogTitle, "Insert a key press", "插入按键"},
    Texts{AppText::StepKeyDialogHint, "Press the key, or pick it from the list.", "请按下该键，或从列表中选择。"},
    Texts{AppText::StepKeyDialogInsert, "Insert", "插入"},
    Texts{AppText::StepDialogCancel, "Cancel", "取消"},
    Texts{AppText::StepTextDialogTitle, "Steps as text", "步骤文本"},
    Texts{AppText::StepTextDialogHint,
          "One step per line. Copy it to share the macro, or paste a macro's steps here and apply them.",
          "每行一个步骤。复制即可分享此宏，也可在此粘贴宏的步骤后应用。"},
    Texts{AppText::StepTextCopy, "Copy", "复制"},
    Texts{AppText::StepTextApply, "Apply", "应用"},
    Texts{AppText::StepTextBadLine, "Nothing was changed: line %1 is not a step (\"%2\").",
          "未做任何更改：第 %1 行不是步骤（“%2”）。"},
    Texts{AppText::MacroListEmpty, "No macros yet.\nClick \"%1\"\nto record one.",
          "还没有宏。\n点击\u201c%1\u201d录制一个。"},
    Texts{AppText::UserLightListEmpty, "No user lights yet.\nRight-click here and\nchoose \"%1\".",
          "还没有自定义灯光。\n在此处点击右键，\n选择\u201c%1\u201d。"},
    Texts{AppText::UserLightImportTip, "Import a .light file", "导入 .light 文件"},
    Texts{AppText::UserLightExportTip, "Export this light", "导出此灯光"},
    Texts{AppText::UserLightDeleteTip, "Delete this light", "删除此灯光"},
    Texts{AppText::UserLightNameEmpty, "A light needs a name: the old name is kept.",
          "灯光需要名称：已保留原名称。"},
    Texts{AppText::UserLightDeleteQuestion, "Delete the light \"%1\"?", "删除灯光\u201c%1\u201d？"},
    Texts{AppText::UserLightDeleteLoses,
          "Its key colours are deleted with it. Custom modes already saved to the keyboard keep their colours.",
          "它的按键颜色将一并删除。已保存到键盘的自定义模式保留其颜色。"},
    Texts{AppText::UserLightSavedToSlot, "Saved to custom mode %1", "已保存到自定义模式 %1"},
    Texts{AppText::UserLightOtherModel,
          "The picture shows another model than the keyboard connected (%1). Choose its model in the list on the "
          "left to paint and save.",
          "图片显示的型号与已连接的键盘（%1）不同。请在左侧型号列表中选择它的型号后再绘制和保存。"},
    Texts{AppText::UserLightAddFirst, "Add a light first: right-click the list and choose \"%1\".",
          "请先添加灯光：在列表上点击右键，选择\u201c%1\u201d。"},
    Texts{AppText::ConnectYourKeyboard, "Connect your keyboard", "请连接您的键盘"},
    Texts{AppText::ConnectYourKeyboardWhy, "Connected, but this app cannot reach it:\n%1",
          "键盘已连接，但本应用无法访问它：\n%1"},
    Texts{AppText::SnapshotFailed,
          "Nothing was changed: the settings could not be copied aside first, so the change could not be undone "
          "(%1). Check that %2 can be written and has space, then try again.",
          "未做任何更改：无法先备份当前设置，更改将无法撤销（%1）。请检查 %2 是否可写且有空间，然后重试。"},
    Texts{AppText::UndoButton, "Undo", "撤销"},
    Texts{AppText::MacroDeleted, "Deleted the macro %1.", "已删除宏%1。"},
    Texts{AppText::UserLightDeleted, "Deleted the light %1.", "已删除灯光%1。"},
    Texts{AppText::RestoreMenuItem, "Restore settings\u2026", "恢复设置\u2026"},
    Texts{AppText::RestoreTitle, "Restore settings", "恢复设置"},
    Texts{AppText::RestoreNone, "There are no restore points yet.", "还没有恢复点。"},
    Texts{AppText::RestoreNoneDetail,
          "One is saved before each reset, import and delete, and before each restore.",
          "每次重置、导入、删除和恢复之前都会保存一个恢复点。"},
    Texts{AppText::RestoreButton, "Restore", "恢复"},
    Texts{AppText::RestoreQuestion, "Restore the settings of %1?", "恢复 %1 的设置？"},
    Texts{AppText::RestoreReplaces,
          "The keys, light effects and key locks of every profile, all macros and all your lights are replaced "
          "with those saved then, on the keyboard too. What you have now is saved as a restore point first.",
          "所有模式的按键、灯效和按键锁定，以及全部宏和自定义灯光，都将替换为当时保存的内容，键盘上的也一样。"
          "当前设置会先保存为一个恢复点。"},
    Texts{AppText::RestoreDone, "Restored the settings of %1.", "已恢复 %1 的设置。"},
    Texts{AppText::RestoreFailed, "Nothing was changed: the settings could not be restored (%1).",
          "未做任何更改：无法恢复设置（%1）。"},
    Texts{AppText::RestoreUnreadable, "Cannot be read: %1", "无法读取：%1"},
    Texts{AppText::SnapshotResetCurrent, "Before a profile reset", "模式重置之前"},
    Texts{AppText::SnapshotResetAll, "Before Reset All", "全部重置之前"},
    Texts{AppText::SnapshotImportKeys, "Before a profile import", "导入模式之前"},
    Texts{AppText::SnapshotImportLight, "Before a light import", "导入灯光之前"},
    Texts{AppText::SnapshotDeleteMacro, "Before a macro was deleted", "删除宏之前"},
    Texts{AppText::SnapshotDeleteLight, "Before a light was deleted", "删除灯光之前"},
    Texts{AppText::SnapshotBeforeRestore, "Before a restore", "恢复之前"},
    Texts{AppText::SnapshotOther, "Saved (%1)", "已保存（%1）"},
    Texts{AppText::SnapshotProfilesOne, "keys set in %1 profile", "%1 个模式设置了按键"},
    Texts{AppText::SnapshotProfilesMany, "keys set in %1 profiles", "%1 个模式设置了按键"},
    Texts{AppText::SnapshotMacrosOne, "%1 macro", "%1 个宏"},
    Texts{AppText::SnapshotMacrosMany, "%1 macros", "%1 个宏"},
    Texts{AppText::SnapshotLightsOne, "%1 light", "%1 个灯光"},
    Texts{AppText::SnapshotLightsMany, "%1 lights", "%1 个灯光"},
    Texts{AppText::MacroStepsUnread,
          "The steps of the macro \"%1\" could not be read from the database (%2), so no macros were sent: the "
          "keyboard keeps the ones it has. Try again.",
          "无法从数据库读取宏\u201c%1\u201d的步骤（%2），因此未发送任何宏：键盘保留其原有的宏。请重试。"},

    // Uploads the keyboard did not confirm.
    Texts{AppText::UploadNotConfirmed,
          "The keyboard did not confirm the %1, even when it was sent a second time: it may hold only part of it. "
          "Unplug the keyboard and plug it in again, and it is sent again.",
          "键盘未确认收到%1，重新发送一次后仍未确认：键盘可能只保存了其中一部分。请拔下键盘并重新插入，届时将重新发送。"},
    Texts{AppText::UploadKeyTable, "key settings of %1", "%1 的按键设置"},
    Texts{AppText::UploadLightMode, "light mode of %1", "%1 的灯效"},
    Texts{AppText::UploadSystemSettings, "key locks of %1", "%1 的按键锁定"},
    Texts{AppText::UploadUserLightSlot, "colours of custom mode %1", "自定义模式 %1 的颜色"},
    Texts{AppText::UploadMacroLibrary, "macro library", "宏库"},
};

static_assert(kTexts.size() == std::size_t(AppText::Count), "every text has its entry");

}  // namespace

QString appText(AppText id) { return appText(id, G_Language); }

QString appText(AppText id, int language)
{
    for (const Texts& t : kTexts)
        if (t.id == id)
            return QString::fromUtf8(language == kLanguageChinese ? t.chinese : t.english);
    return {};
}
