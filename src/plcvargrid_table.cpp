#include "plcvargrid_table.h"

PlcVarTable::PlcVarTable() : wxGridStringTable(0, varColumnCount) {}

void PlcVarTable::NoteShown(std::size_t row, const PlcDebugVar& var)
{
    m_vars[row] = var;
}

bool PlcVarTable::Shows(std::size_t row, const PlcDebugVar& var) const
{
    return m_vars[row] == var;
}

ShownColumn& PlcVarTable::Shown(int column)
{
    return m_shown[static_cast<std::size_t>(column)];
}

void PlcVarTable::SetValue(int row, int col, const wxString& value)
{
    const auto position = static_cast<std::size_t>(row);
    wxGridStringTable::SetValue(row, col, value);
    m_vars[position].reset();
    if (col != varColumnFormat) {
        Shown(col).Replace(position, value.ToStdWstring());
    }
}

void PlcVarTable::Clear()
{
    for (int row = 0; row < GetNumberRows(); ++row) {
        for (int column = 0; column < varColumnCount; ++column) {
            SetValue(row, column, "");
        }
    }
}

bool PlcVarTable::AppendRows(std::size_t rowCount)
{
    m_vars.resize(m_vars.size() + rowCount);
    for (ShownColumn& column : m_shown) {
        for (std::size_t i = 0; i < rowCount; ++i) {
            column.Append(L"");
        }
    }
    return wxGridStringTable::AppendRows(rowCount);
}

bool PlcVarTable::DeleteRows(std::size_t row, std::size_t rowCount)
{
    const auto begin = m_vars.begin() + static_cast<std::ptrdiff_t>(row);
    m_vars.erase(begin, begin + static_cast<std::ptrdiff_t>(rowCount));
    for (ShownColumn& column : m_shown) {
        column.Remove(row, rowCount);
    }
    return wxGridStringTable::DeleteRows(row, rowCount);
}

bool PlcVarTable::CanMeasureColUsingSameAttr(int /*col*/) const
{
    return true;
}
