// The sample's window: the plant's picture, all values in a table, and how the connection stands.
#pragma once

#include "link.h"
#include "plant_picture.h"

#include <QLabel>
#include <QTableWidget>
#include <QWidget>

class VisuWindow : public QWidget {
  public:
    explicit VisuWindow(const QString& channel);

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void take(const QString& text, bool first);
    void show_block(const QString& block, const QString& number);
    void show_end();

    QLabel title_, state_, block_;
    PlantPicture picture_;
    QTableWidget table_;
    bool ended_ = false; // by Velorn, or "ENDE" has been said
    Link link_;
};
