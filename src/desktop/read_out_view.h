// A small framed table beside the pointer: the first line is its head, the others have columns of which the
// second stands at the right. The mouse goes through it.
#pragma once

#include <QStringList>
#include <QWidget>

#include <vector>

namespace velorn {

class ReadOutView : public QWidget {
  public:
    explicit ReadOutView(QWidget* parent);

    // Lines by "\n", their columns by tabs.
    void set_text(const QString& text);
    QString text() const { return text_; }
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void measure();

    QString text_;
    std::vector<QStringList> lines_;
    std::vector<int> columns_; // their widths, logical pixels
    int head_ = 0;             // width of what has no columns
};

} // namespace velorn
