#pragma once

class Gpio;

/// The light of the touchscreen. It alone knows whether the screen sleeps, and with that whether a level may
/// be shown. GUI thread only, unless said otherwise.
class Backlight
{
public:
    explicit Backlight(const Gpio &gpio);

    /// Sets the light itself, whether the screen sleeps or not: 0 switches it off, 1..7 are the levels,
    /// anything else counts as 7. Any thread.
    void light(int level) const;

    bool asleep() const { return m_asleep; }
    /// Switches the light off.
    void sleep();
    /// Switches it on, at the level of the settings.
    void wake();
    /// Shows the level of the settings, which may have changed: now, or when the screen wakes.
    void showLevel() const;

private:
    const Gpio &m_gpio;
    bool m_asleep = false;
};
