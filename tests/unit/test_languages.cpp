#include "plcintlang.h"
#include "projectfile.h"

#include <ktcore/ktintllanguagetext.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// Holds the language files, the built-in texts and the enum of text numbers together. The list of
// the enum's members is read from its header, so that there is no second one to keep.

namespace {

namespace fs = std::filesystem;

constexpr int firstTextOfSection48 = 4800000;
const std::vector<std::string> languages = {"de", "en"};

std::string ReadFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.good()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string WithoutComments(const std::string& source)
{
    return std::regex_replace(source, std::regex("//[^\n]*"), "");
}

/// The members of the enum TextId and their numbers.
std::map<std::string, int> TextIds()
{
    const std::string header = WithoutComments(ReadFile(ProjectFile("src/plcintlang.h")));
    const std::size_t start = header.find("enum class TextId");
    const std::string body = header.substr(start, header.find("};", start) - start);
    std::map<std::string, int> ids;
    const std::regex member(R"((\w+) = (\d+))");
    for (std::sregex_iterator match(body.begin(), body.end(), member), end; match != end; ++match) {
        ids[(*match)[1]] = std::stoi((*match)[2]);
    }
    return ids;
}

/// The members that the plug-in's sources name.
std::set<std::string> NamedTextIds()
{
    std::set<std::string> names;
    const std::regex use(R"(TextId::(\w+))");
    for (const auto& file : fs::directory_iterator(ProjectFile("src"))) {
        const fs::path extension = file.path().extension();
        if ((extension == ".cpp" || extension == ".h") &&
            file.path().filename() != "plcintlang.h") {
            const std::string source = WithoutComments(ReadFile(file.path()));
            for (std::sregex_iterator match(source.begin(), source.end(), use), end; match != end;
                 ++match) {
                names.insert((*match)[1]);
            }
        }
    }
    return names;
}

std::set<int> TextNumbers()
{
    std::set<int> numbers;
    for (const auto& [name, number] : TextIds()) {
        numbers.insert(number);
    }
    return numbers;
}

/// A line "number=text" of a language file as it stands.
struct Line
{
    int number;
    std::string text;
};

std::vector<Line> LinesOf(const std::string& language)
{
    std::istringstream file(ReadFile(ProjectFile("languages/" + language + ".lng")));
    std::vector<Line> lines;
    const std::regex entry(R"((\d+)=(.*))");
    std::smatch match;
    for (std::string line; std::getline(file, line);) {
        if (std::regex_match(line, match, entry)) {
            lines.push_back({firstTextOfSection48 + std::stoi(match[1]), match[2]});
        } else {
            EXPECT_TRUE(line.empty() || line[0] == ';' || line == "[48]") << line;
        }
    }
    return lines;
}

/// The texts of one language, as the service gives them.
class Language
{
public:
    explicit Language(const std::string& name)
    {
        m_service.SetFilePath(fs::path(ProjectFile("languages")).wstring().c_str());
        m_service.SetLanguage(wxString(name).wc_str());
    }

    std::wstring operator[](TextId id) { return (*this)[static_cast<int>(id)]; }

    std::wstring operator[](int number)
    {
        const wchar_t* text = m_service.GetText(number);
        EXPECT_NE(text, nullptr) << number;
        return text != nullptr ? text : L"";
    }

private:
    KtIntlLanguageTextImp m_service;
};

/// The letter that an ampersand marks, in lower case; nothing when none is marked.
std::wstring MnemonicOf(const std::wstring& label)
{
    const std::size_t ampersand = label.find(L'&');
    if (ampersand == std::wstring::npos) {
        return L"";
    }
    EXPECT_LT(ampersand + 1, label.size()) << label;
    EXPECT_EQ(label.find(L'&', ampersand + 1), std::wstring::npos) << label;
    return wxString(label.substr(ampersand + 1, 1)).Lower().ToStdWstring();
}

constexpr std::array fileMenu = {
    TextId::MenuNew,
    TextId::MenuOpen,
    TextId::MenuClose,
    TextId::MenuSave,
    TextId::MenuSaveAs,
    TextId::MenuExit};

// What is on the screen together. Of the two pages each has the menu bar above it.
constexpr std::array watchPage = {
    TextId::MenuFile, TextId::MenuHelp, TextId::VarDefine, TextId::VarModify, TextId::VarDelete};
constexpr std::array programPage = {TextId::MenuFile, TextId::MenuHelp, TextId::PrgBlock};
constexpr std::array settingsDialog = {
    TextId::SettingsArea,
    TextId::SettingsDataBlock,
    TextId::SettingsAddress,
    TextId::Ok,
    TextId::Cancel};

constexpr std::array acceleratorKeys = {
    TextId::MenuNewKey,
    TextId::MenuOpenKey,
    TextId::MenuCloseKey,
    TextId::MenuSaveKey,
    TextId::MenuSaveAsKey,
    TextId::MenuExitKey,
    TextId::MenuInfoKey};

template <typename Labels> void ExpectDifferentMnemonics(Language& texts, const Labels& labels)
{
    std::set<std::wstring> seen;
    for (const TextId label : labels) {
        const std::wstring mnemonic = MnemonicOf(texts[label]);
        EXPECT_FALSE(mnemonic.empty()) << texts[label];
        EXPECT_TRUE(seen.insert(mnemonic).second) << texts[label];
    }
}

std::string PlaceholdersOf(const std::wstring& text)
{
    std::string placeholders;
    for (std::size_t i = text.find(L'%'); i != std::wstring::npos; i = text.find(L'%', i + 1)) {
        placeholders += wxString(text.substr(i, 2)).utf8_string();
    }
    return placeholders;
}

} // namespace

TEST(Languages, TheEnumOfTextNumbersIsFound)
{
    const std::map<std::string, int> ids = TextIds();

    EXPECT_EQ(ids.at("VarPage"), static_cast<int>(TextId::VarPage));
    EXPECT_EQ(ids.at("InfoVersion"), static_cast<int>(TextId::InfoVersion));
    EXPECT_EQ(ids.at("DbFamily64"), static_cast<int>(TextId::DbFamily64));
    EXPECT_EQ(ids.size(), TextNumbers().size()) << "a number twice";
}

TEST(Languages, EachFileHasEveryTextOnceAndNoOther)
{
    for (const std::string& language : languages) {
        std::vector<int> numbers;
        for (const Line& line : LinesOf(language)) {
            numbers.push_back(line.number);
        }

        EXPECT_THAT(numbers, testing::UnorderedElementsAreArray(TextNumbers())) << language;
    }
}

TEST(Languages, NoTextIsEmpty)
{
    for (const std::string& language : languages) {
        Language texts(language);
        for (const int number : TextNumbers()) {
            EXPECT_FALSE(texts[number].empty()) << language << ' ' << number;
        }
    }
}

TEST(Languages, TheBuiltInTextsAreTheEnglishOnes)
{
    Language english("en");
    KtIntlLanguageTextImp builtIn;
    for (const int number : TextNumbers()) {
        EXPECT_EQ(std::wstring(builtIn.GetText(number)), english[number]) << number;
    }
    EXPECT_EQ(builtIn.GetText(firstTextOfSection48), nullptr);
}

TEST(Languages, ATextEndsInABlankOnlyBetweenQuotes)
{
    for (const std::string& language : languages) {
        Language texts(language);
        for (const Line& line : LinesOf(language)) {
            const bool isQuoted = line.text.size() > 1 && line.text.front() == '"';
            EXPECT_EQ(isQuoted, line.text.back() == '"') << line.text;
            const std::string blanks = " \t\r";
            EXPECT_EQ(blanks.find(line.text.front()), std::string::npos) << line.text;
            EXPECT_EQ(blanks.find(line.text.back()), std::string::npos) << line.text;
            const std::wstring text = texts[line.number];
            const bool isBlankEnded = text.front() == L' ' || text.back() == L' ';
            EXPECT_EQ(isQuoted, isBlankEnded) << line.text;
        }
    }
}

TEST(Languages, PlaceholdersAreThoseThatTheUseFillsIn)
{
    const std::map<TextId, std::string> wanted = {
        {TextId::AddressRange, "%d"},
        {TextId::ListFull, "%d"},
        {TextId::ValueTooLarge, "%d"},
        {TextId::ValueTooSmall, "%d"},
        {TextId::FileUnreadable, "%s"}};
    for (const std::string& language : languages) {
        Language texts(language);
        for (const int number : TextNumbers()) {
            const auto use = wanted.find(static_cast<TextId>(number));
            EXPECT_EQ(
                PlaceholdersOf(texts[number]), use != wanted.end() ? use->second : std::string())
                << language << ' ' << number;
        }
    }
}

TEST(Languages, AcceleratorsAreLettersAndDifferInTheWholeMenuBar)
{
    // Ctrl with one of these belongs to the text that is being typed into a value cell.
    const std::wstring editingLetters = L"ACVXZ";
    for (const std::string& language : languages) {
        Language texts(language);
        std::set<std::wstring> seen;
        for (const TextId key : acceleratorKeys) {
            const std::wstring letter = texts[key];
            ASSERT_EQ(letter.size(), 1U) << letter;
            EXPECT_TRUE(letter[0] >= L'A' && letter[0] <= L'Z') << letter;
            EXPECT_EQ(editingLetters.find(letter), std::wstring::npos) << letter;
            EXPECT_TRUE(seen.insert(letter).second) << language << ": twice " << letter;
        }
    }
}

TEST(Languages, AltLettersDifferOnEachPageInEachMenuAndInEachDialog)
{
    for (const std::string& language : languages) {
        Language texts(language);

        ExpectDifferentMnemonics(texts, fileMenu);
        ExpectDifferentMnemonics(texts, watchPage);
        ExpectDifferentMnemonics(texts, programPage);
        ExpectDifferentMnemonics(texts, settingsDialog);
    }
}

TEST(Languages, NoOtherTextMarksAnAltLetter)
{
    std::set<int> marked;
    const auto mark = [&marked](const auto& labels) {
        for (const TextId label : labels) {
            marked.insert(static_cast<int>(label));
        }
    };
    mark(fileMenu);
    mark(watchPage);
    mark(programPage);
    mark(settingsDialog);
    for (const std::string& language : languages) {
        Language texts(language);
        for (const int number : TextNumbers()) {
            // What is a title, a column's head, a tab or a help text as well shows no letter.
            const bool hasAmpersand = texts[number].find(L'&') != std::wstring::npos;
            EXPECT_EQ(hasAmpersand, marked.count(number) != 0) << language << ' ' << number;
        }
    }
}

TEST(Languages, NoTextBreaksTheFormThatItIsPutInto)
{
    for (const std::string& language : languages) {
        Language texts(language);
        for (const TextId label : fileMenu) {
            EXPECT_EQ(texts[label].find(L'\t'), std::wstring::npos) << "an accelerator follows";
        }
        EXPECT_EQ(texts[TextId::ListFiles].find(L'|'), std::wstring::npos) << "a wildcard follows";
        for (const int number : TextNumbers()) {
            const bool mayHaveLines = number == static_cast<int>(TextId::FileUnreadable);
            EXPECT_TRUE(mayHaveLines || texts[number].find(L'\n') == std::wstring::npos) << number;
        }
    }
}

TEST(Languages, GermanDiffersFromEnglishWhereverTheWordDoes)
{
    const std::set<TextId> sameWord = {
        TextId::VarColumnOperand,
        TextId::VarColumnFormat,
        TextId::SizeBit,
        TextId::SizeByte,
        TextId::Ok,
        TextId::InfoVersion,
        TextId::InfoMaker,
        TextId::DbFamily60};
    const std::set<TextId> keys(acceleratorKeys.begin(), acceleratorKeys.end());
    Language german("de");
    Language english("en");
    for (const int number : TextNumbers()) {
        const auto id = static_cast<TextId>(number);
        if (keys.count(id) == 0) {
            EXPECT_EQ(german[id] == english[id], sameWord.count(id) != 0) << german[id];
        }
    }
}

TEST(Languages, TheRefusalOfALargeValueSaysHowANegativeOneBegins)
{
    EXPECT_THAT(Language("de")[TextId::ValueTooLarge], testing::HasSubstr(L"Minuszeichen"));
    EXPECT_THAT(Language("en")[TextId::ValueTooLarge], testing::HasSubstr(L"minus sign"));
}

TEST(Languages, TheGermanFileIsReadAsUtf8)
{
    EXPECT_EQ(Language("de")[TextId::AreaInputs], L"Eing\u00e4nge (E)");
}

TEST(Languages, EveryTextIsShownSomewhere)
{
    // Items of a box, which the code reaches by counting from the first.
    const std::vector<std::pair<TextId, TextId>> runs = {
        {TextId::AreaOutputs, TextId::AreaCounters},
        {TextId::FormatDecimal, TextId::FormatFloat},
        {TextId::SizeBit, TextId::SizeDouble}};
    const std::set<std::string> named = NamedTextIds();

    for (const auto& [name, number] : TextIds()) {
        const auto id = static_cast<TextId>(number);
        const bool isCounted = std::any_of(runs.begin(), runs.end(), [id](const auto& run) {
            return run.first < id && id <= run.second;
        });
        EXPECT_TRUE(isCounted || named.count(name) != 0) << name;
    }
}
