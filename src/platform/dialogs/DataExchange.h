#pragma once
#include "vldv_api.h"

#include <string>

class CVarListCtrl;
class SPMVar;

/// One exchange between the controls of a dialog and the values behind them, in one direction.
class VLDV_API CDataExchange {
public:
    explicit CDataExchange(bool saveAndValidate) : m_bSaveAndValidate(saveAndValidate) {}
    virtual ~CDataExchange() = default;

    virtual std::wstring GetControlText(int id) const = 0;
    virtual void SetControlText(int id, const std::wstring& text) = 0;
    /// The grid with this number, over a list of its own; null when there is none.
    virtual CVarListCtrl* GetVarListCtrl(unsigned) { return nullptr; }

    bool m_bSaveAndValidate; ///< from the controls to the values
};

/// Exchanges a number: up to 256 characters of the control's text are read, and a text that is no number leaves the
/// value. Written are `precision` decimals for magnitudes of 1e-7 to 1e7, else (0 and negative numbers among them)
/// `precision` digits.
VLDV_API void DDX_DoublePrecText(CDataExchange* exchange, int id, double& value, int precision);

/// Exchanges variables with a grid, by their names. Towards the grid they become its list.
VLDV_API void DDX_VarList(CDataExchange* exchange, unsigned id, SPMVar* variables, int count);
