#include "plcvargrid_table.h"

#include <gtest/gtest.h>

namespace {

PlcDebugVar VarWithValue(std::int32_t value)
{
    PlcDebugVar var;
    var.area = eAreaFlag;
    var.address = "1";
    var.value = value;
    return var;
}

int LetterCount(const std::wstring& text)
{
    return static_cast<int>(text.size());
}

} // namespace

TEST(PlcVarTable, ShowsTheVariableThatItsCellsWereFilledFrom)
{
    PlcVarTable table;
    table.AppendRows(2);

    table.NoteShown(1, VarWithValue(5));

    EXPECT_TRUE(table.Shows(1, VarWithValue(5)));
    EXPECT_FALSE(table.Shows(1, VarWithValue(6)));
    EXPECT_FALSE(table.Shows(0, VarWithValue(5)));
}

TEST(PlcVarTable, ShowsNoVariableAnyMoreOnceACellOfItsRowIsWritten)
{
    for (int column = 0; column < varColumnCount; ++column) {
        PlcVarTable table;
        table.AppendRows(2);
        table.NoteShown(0, VarWithValue(5));
        table.NoteShown(1, VarWithValue(6));

        table.SetValue(0, column, "typed");

        EXPECT_FALSE(table.Shows(0, VarWithValue(5))) << column;
        EXPECT_TRUE(table.Shows(1, VarWithValue(6))) << column;
    }
}

TEST(PlcVarTable, MovesRowsUpWhenOneIsDeleted)
{
    PlcVarTable table;
    table.AppendRows(3);
    table.SetValue(1, varColumnValue, "longest");
    table.SetValue(2, varColumnValue, "22");
    table.NoteShown(2, VarWithValue(22));

    table.DeleteRows(1, 1);

    EXPECT_EQ(table.GetNumberRows(), 2);
    EXPECT_EQ(table.GetValue(1, varColumnValue), "22");
    EXPECT_TRUE(table.Shows(1, VarWithValue(22)));
    EXPECT_EQ(table.Shown(varColumnValue).MaxWidth(LetterCount), 2);
}

TEST(PlcVarTable, ClearedShowsNothing)
{
    PlcVarTable table;
    table.AppendRows(1);
    table.SetValue(0, varColumnOperand, "MB 1");
    table.NoteShown(0, VarWithValue(1));

    table.Clear();

    EXPECT_EQ(table.GetValue(0, varColumnOperand), "");
    EXPECT_FALSE(table.Shows(0, VarWithValue(1)));
    EXPECT_EQ(table.Shown(varColumnOperand).MaxWidth(LetterCount), 0);
}
