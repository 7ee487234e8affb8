#pragma once

#include "mainwindow/send/QuickStore.h"

#include <QObject>
#include <array>
#include <functional>

class KeyBindings;
class Map27Executive;
class QAction;
class QMenu;
class SendPane;
class StatusTexts;
struct IDbSession;
struct IPrompt;
struct IStringSource;
struct SessionState;

// The menus of favourites, texts and last parties, with their keys. What is chosen is only prepared in the
// send pane: a key sends nothing, Enter does.
class QuickMenus : public QObject {
    Q_OBJECT

public:
    struct Parts {
        const IStringSource& strings;
        IPrompt& prompt;
        Settings& settings;
        IDbSession& database;
        const SessionState& session;
        const StatusTexts& statusTexts;
        const Map27Executive& executive;
        SendPane& send;
        KeyBindings& keys;
    };

    // Belongs to the send pane. Each becomes the menu of its item.
    QuickMenus(const Parts& parts, QAction& favourites, QAction& texts, QAction& parties);
    ~QuickMenus() override;

private:
    void BuildFavourites(QAction& item);
    void BuildTexts(QAction& item);
    QMenu* AddMenu(QAction& item);
    void FillFavourites();
    void FillTexts();
    void FillParties(QMenu& menu);
    QuickStore Store() const;
    void Attempt(const std::function<void()>& step);
    void PrepareFavourite(int place);
    void PrepareText(int place);
    void KeepFavourite(int place);
    void KeepText(int place);
    QString Describe(const Favourite& favourite) const;

    Parts m_parts;
    std::array<QAction*, QuickStore::Favourites> m_favourites{};
    std::array<QAction*, QuickStore::Favourites> m_keepFavourites{};
    std::array<QAction*, QuickStore::Texts> m_texts{};
    std::array<QAction*, QuickStore::Texts> m_keepTexts{};
};
