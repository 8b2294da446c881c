extends SCTweenPropertyAction
## Ease any property to a value over time. A light that dims, a panel that fades, a camera that widens its view, a
## bar that fills.
