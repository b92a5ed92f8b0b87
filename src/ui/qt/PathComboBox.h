// A combo box of paths: of one that is wider than the box the end is shown, with the file name.
#pragma once

#include <QComboBox>

namespace tonvane {

class PathComboBox : public QComboBox {
  public:
    explicit PathComboBox(QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tonvane
