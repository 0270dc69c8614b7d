// A small picture of the plant: generator, storage tank with its temperatures, heating circuit.
#pragma once

#include <QHash>
#include <QString>
#include <QWidget>

// "Vorlauf" -> "82,5 C"
using Values = QHash<QString, QString>;

// The number at the value's beginning, with decimal comma; 0 if there is none.
double number_of(const QString& value);

class PlantPicture : public QWidget {
  public:
    PlantPicture();
    void show_values(const Values& values);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Values values_;
};
