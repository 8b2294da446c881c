extends SCAttackAction
## Swing whatever weapon is worn, across its reach in front of the character, the way they are heading, for its
## swing time. What has a Hurt Box there is hit once.
