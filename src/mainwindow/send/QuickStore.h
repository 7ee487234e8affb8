#pragma once

#include <QString>
#include <optional>

class Settings;

// A status or call under a key. It has no options: what is kept can be neither an emergency nor a priority
// call.
struct Favourite {
    QString to;
    std::optional<int> status; // nothing: a call
};

// What an operator keeps under keys at this console: favourites and texts, by place, 0 for the first.
class QuickStore {
public:
    static constexpr int Favourites = 8;
    static constexpr int Texts = 9;

    // The settings must outlive it.
    QuickStore(Settings& settings, const QString& user);

    // Nothing at a free place, or at one with something unusable. Raise Error when it cannot be read.
    std::optional<Favourite> FavouriteAt(int place) const;
    QString TextAt(int place) const;

    // Raise Error when it cannot be stored. Nothing, or an empty text, frees the place.
    void KeepFavourite(int place, const std::optional<Favourite>& favourite);
    void KeepText(int place, const QString& text);

private:
    Settings& m_settings;
    QString m_section;
};
