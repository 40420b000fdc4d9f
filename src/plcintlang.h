#pragma once

#include <ktcore/ktintllanguagetext.h>

#include <wx/string.h>

// Every text that the operator sees, by number, and texts with an argument. GUI thread.

/// Full numbers of all texts that the plug-in shows (section 48).
enum class TextId : int
{
    VarPage = 4800001,
    VarColumnOperand = 4800002,
    VarColumnValue = 4800003, ///< Also the title of the value entry dialog.
    VarColumnFormat = 4800004,
    VarDefine = 4800005,
    VarModify = 4800006,
    VarDelete = 4800007,
    SettingsTitleDefine = 4800009,
    SettingsArea = 4800010,
    AreaOutputs = 4800011,
    AreaInputs = 4800012,
    AreaFlags = 4800013,
    AreaDataBlocks = 4800014,
    AreaTimers = 4800015,
    AreaCounters = 4800016,
    SettingsDataBlock = 4800017,
    Db1 = 4800018,
    Db20 = 4800019,
    Db2 = 4800020,
    Db3 = 4800021,
    Db4 = 4800022,
    Db10 = 4800023,
    Db15 = 4800024,
    Db21 = 4800025,
    Db25 = 4800026,
    Db26 = 4800027,
    Db100 = 4800028,
    SettingsFormat = 4800029,
    FormatDecimal = 4800030,
    FormatHexadecimal = 4800031,
    FormatBinary = 4800032,
    FormatFloat = 4800033,
    SettingsSize = 4800034,
    SizeBit = 4800035,
    SizeByte = 4800036,
    SizeWord = 4800037,
    SizeDouble = 4800038,
    SettingsAddress = 4800039,
    Ok = 4800040,
    Cancel = 4800041,
    PrgPage = 4800042,
    PrgBlock = 4800043,
    InfoProduct = 4800045,
    InfoVersion = 4800046,
    InfoMaker = 4800048,
    FrameTitle = 4800049,
    MenuNew = 4800050, ///< Of each menu item: label, accelerator letter, help.
    MenuNewKey = 4800051,
    MenuNewHelp = 4800052,
    MenuOpen = 4800053,
    MenuOpenKey = 4800054,
    MenuOpenHelp = 4800055,
    MenuClose = 4800056,
    MenuCloseKey = 4800057,
    MenuCloseHelp = 4800058,
    MenuSave = 4800059,
    MenuSaveKey = 4800060,
    MenuSaveHelp = 4800061,
    MenuSaveAs = 4800062,
    MenuSaveAsKey = 4800063,
    MenuSaveAsHelp = 4800064,
    MenuInfoKey = 4800066,
    MenuInfo = 4800067, ///< Label and help of the item, title of the info dialog.
    MenuFile = 4800068,
    MenuHelp = 4800069,
    PrgColumnState = 4800070,
    PrgColumnValue = 4800071,
    PrgColumnText = 4800072,
    VarDefineTip = 4800073,
    VarModifyTip = 4800074,
    VarDeleteTip = 4800075,
    OpenMessage = 4800076,
    ListFiles = 4800077, ///< Name of the file type in the file dialogs.
    SaveQuestion = 4800078,
    SaveQuestionCaption = 4800079,
    SaveAsMessage = 4800080,
    OkTip = 4800083,
    CancelTip = 4800084,
    ErrorCaption = 4800085,
    AddressNeedsBit = 4800086,
    AddressBitRange = 4800087,
    AddressRange = 4800088, ///< With the bound, a number.
    ValueInvalid = 4800089,
    ValuePrompt = 4800090,
    SettingsTitleModify = 4800091,
    FileUnreadable = 4800092, ///< With the path, a string.
    ModifyOneOnly = 4800093,
    ModifyNoneSelected = 4800094,
    DeleteNoneSelected = 4800095,
    AddressHasBit = 4800096,
    AddressCaption = 4800097,
    ListFull = 4800098, ///< With the limit, a number; may do without it.
    ListFileCaption = 4800099,
    ValueTooLarge = 4800100, ///< With the maximum, a number.
    AddressInvalid = 4800101,
    MenuExit = 4800102,
    MenuExitKey = 4800103,
    MenuExitHelp = 4800104,
    Db95 = 4800105,
    ValueTooSmall = 4800106, ///< With the minimum, a number.
    DbFamily50 = 4800107,
    DbFamily60 = 4800108,
    DbFamily64 = 4800109
};

/// The language service, for looking texts up.
KtIntlLanguageText& IntlLang();

/// The same service, for setting path and language.
KtIntlLanguageTextImp& IntlLangImp();

/// @return the text as the language files have it now; empty when it is missing.
wxString LanguageText(TextId id);

/// @return the text with its number placeholder filled in; see FillPlaceholder().
wxString LanguageText(TextId id, int argument);

/// @return the text with its string placeholder filled in; see FillPlaceholder().
wxString LanguageText(TextId id, const wxString& argument);

/// Fills the one number placeholder of @p format ("%d", "%i", "%u", "%ld"; flags and width
/// allowed; "%%" is a percent sign). A format without any placeholder is returned alone; one with
/// another placeholder, or with several, as it stands, followed by a blank and the argument.
wxString FillPlaceholder(const wxString& format, int argument);

/// The same for the one string placeholder ("%s", "%ls", "%S").
wxString FillPlaceholder(const wxString& format, const wxString& argument);
