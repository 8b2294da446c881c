extends SCDropItemAction
## Put something down where it can be picked up again, for dropped loot, a weapon thrown away or a defeated enemy
## spilling what it carried.
