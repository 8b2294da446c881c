extends SCScreenSettingsAction
## What an Options menu does to the screen, which covers fullscreen or a window, the window's size, and V-Sync. What
## is not set here is left alone.
