#pragma once

#include <QDialog>
#include <string>

#include "transfer/Losses.h"

namespace vortan {

/// What an import or export could not carry over, as a list that can be copied as a table.
class LossesForm : public QDialog {
  public:
    LossesForm(QWidget* parent, const Losses& losses, bool import, const std::string& fileName);
};

}  // namespace vortan
