// The visualisation's end of the channel to Velorn: looks for it every second, says "neuanf" when it is there
// and every four seconds from then on.
#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <QString>
#include <QTimer>

#include <functional>

class Link {
  public:
    explicit Link(QString name);
    ~Link() { socket_.disconnect(); }

    std::function<void(bool connected)> changed;
    // `first`: it was there before this connection, so it may be of an earlier session.
    std::function<void(const QString& text, bool first)> arrived;

    void begin();
    // No more "neuanf"; Velorn has ended the session.
    void fall_silent() { life_.stop(); }
    // Says "ENDE"; `said` is called when it has left, or when it can't.
    void end(std::function<void()> said);

  private:
    void look_for_velorn();
    void say_new_beginning();
    void say(const QByteArray& text);
    void read();
    void be_done();

    QString name_;
    QLocalSocket socket_;
    QTimer again_, life_;
    QByteArray received_;
    int beginnings_ = 0;
    bool first_ = true;
    std::function<void()> said_;
};
