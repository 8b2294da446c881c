extends SCReparentAction
## Move a node, and everything under it, to sit under another node, its new parent. A rider climbs onto a horse, a
## sword goes into a hand, a card from the deck to the table. Machines on what is moved go on as if nothing had
## happened.
