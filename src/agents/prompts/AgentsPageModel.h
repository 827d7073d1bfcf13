#pragma once

#include "app/QmlInstances.h"
#include "app/RowsModel.h"
#include <QObject>
#include <QVariantList>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

class AgentPromptsManager;

// The view model of the open notch's Agents page: one card per waiting prompt (agent, tool, and the
// command or file it acts on; or a question with its options) and the answers the cards offer.
class AgentsPageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(norva::RowsModel* cards READ cards CONSTANT)
    Q_PROPERTY(int count READ count NOTIFY cardsChanged)
public:
    static AgentsPageModel* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<AgentsPageModel>(); }
    explicit AgentsPageModel(AgentPromptsManager& manager, QObject* parent = nullptr);

    RowsModel* cards() { return &m_cards; }
    int count() const { return m_cards.count(); }

    Q_INVOKABLE bool allow(const QString& id);
    Q_INVOKABLE bool deny(const QString& id);
    // Hands the prompt back to the agent's own prompt in its terminal, and asks for that terminal.
    Q_INVOKABLE bool answerInTerminal(const QString& id);
    // Asks for the agent's terminal to be brought forward (the jump-back answers it).
    Q_INVOKABLE void showTerminal(const QString& id);

signals:
    void cardsChanged();
    // The session's transcript is what joins a prompt to the terminal the hooks recorded for it.
    void terminalRequested(const QString& transcriptPath);

private:
    // Lays the waiting prompts over the shown cards, so an open page keeps the cards that stay.
    void refreshCards();

    AgentPromptsManager& m_manager;
    RowsModel m_cards;
};

} // namespace norva
