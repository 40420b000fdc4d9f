#include "fuzz.h"
#include "ktcore/ktintllanguagetext.h"
#include "tempdir.h"

#include <cwchar>

// A language file: every number has a text or none; a file without any section is none, and the
// built-in texts serve.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TempDir folder;
    const std::string_view input = Text(data, size);
    folder.Write("any.lng", std::string(input));

    KtIntlLanguageTextImp texts;
    texts.SetFilePath(folder.Path().wstring().c_str());
    texts.SetLanguage(L"any");
    constexpr int lastEntry = 110; // beyond all numbers in use
    std::size_t letters = 0;
    for (int section : {-1, 0, 1, 48}) {
        for (int entry = -1; entry < lastEntry; ++entry) {
            const wchar_t* text = texts.GetText(section, entry);
            letters += text != nullptr ? std::wcslen(text) : 0;
        }
    }
    Require(
        letters > 0 || input.find('[') != std::string_view::npos,
        "the built-in texts serve for a file without a section");
    return 0;
}
