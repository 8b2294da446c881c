extends SCProceduralPlacementAction
## Put many copies of a scene over an area at once, such as trees in a forest, rocks on a hillside, grass tufts,
## crates in a warehouse or enemies across an arena.
