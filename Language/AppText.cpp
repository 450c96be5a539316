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
    Texts{AppText::MacroListEmpty, "No macros yet. Click \u201c%1\u201d to record one.",
          "还没有宏。点击\u201c%1\u201d录制一个。"},
    Texts{AppText::UserLightListEmpty, "No light modes of your own yet. Right-click here and choose \u201c%1\u201d.",
          "还没有自定义灯效。在此处点击右键，选择\u201c%1\u201d。"},
};

}  // namespace

QString appText(AppText id)
{
    for (const Texts& t : kTexts)
        if (t.id == id)
            return QString::fromUtf8(G_Language == kLanguageChinese ? t.chinese : t.english);
    return {};
}
