extends SCOfferItemAction
## Choose an item to show without using it up, for a pedestal the player may walk away from, a shop shelf, or a
## chest that is only opened later. It can be offered again until somebody is given it.
