// Puts widgets side by side and goes on in a new row where the width ends, so that nothing is cut off in a
// narrow window.
#pragma once

#include <QLayout>

#include <memory>
#include <vector>

namespace velorn {

class FlowLayout : public QLayout {
  public:
    // Distances in logical pixels; margins are none.
    FlowLayout(int between, int between_rows);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override;
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;    // all in one row
    QSize minimumSize() const override; // of the widest item
    void setGeometry(const QRect& rect) override;

  private:
    template <class Place>
    int flow(int width, Place place) const; // gives the height

    int between_, between_rows_;
    std::vector<std::unique_ptr<QLayoutItem>> items_;
};

} // namespace velorn
