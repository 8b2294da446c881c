extends SCNewRunAction
## Start a new run, where every item can turn up again and none is held. Whoever was given items loses what these
## changed. What inventories hold stays.
