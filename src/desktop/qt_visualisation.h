// The channel to a visualisation program: a local socket named `velorn-visu` that only the same user may
// open. docs/visualisation.md tells its framing.
#pragma once

#include "runtime/event_loop.h"
#include "runtime/outside.h"

#include <QByteArray>
#include <QLocalServer>
#include <QLocalSocket>
#include <QString>

#include <memory>
#include <string>
#include <vector>

namespace velorn {

class QtVisualisation final : public VisualisationChannel {
  public:
    static constexpr qint64 longest_text = qint64{1} << 20; // bytes; who sends more is cut off
    static constexpr std::size_t most_partners = 8;

    explicit QtVisualisation(EventLoop& loop, QString name = QStringLiteral("velorn-visu"));
    ~QtVisualisation() override;

    Outcome open() override;
    void set_text(std::string_view text) override;

  private:
    struct Partner {
        std::unique_ptr<QLocalSocket> socket;
        QByteArray received;
        bool behind = false; // the present text is still to be sent
    };

    void take_partner();
    void read(QLocalSocket* socket);
    void write(Partner& partner);
    void part(QLocalSocket* socket);
    Partner* partner_of(const QLocalSocket* socket);

    EventLoop& loop_;
    QString name_;
    QLocalServer server_;
    std::vector<Partner> partners_;
    QByteArray frame_; // the present text with its length in front
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace velorn
