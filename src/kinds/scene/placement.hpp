#pragma once

// The kind of the scene category that puts many copies of a scene over an area.

#include "action/kind_table.hpp"

class SCProceduralPlacementAction : public SCMachineAction {
	SC_KIND(SCProceduralPlacementAction, SCMachineAction)

public:
	SC_ENUM(Layout, SCATTER, GRID)
	SC_ENUM(By, CHANCE, NOISE)

	enum Wrong : int64_t {
		NO_SCENE,
		NO_AREA,
		NO_COUNT,
		NO_CELL_SIZE,
		TOO_MANY_CELLS,
		TOO_MANY,
		NO_PARENT,
		OTHER_SIDE,
	};

	static constexpr int64_t MOST_AT_ONCE = 5000;

	String scene_path;
	NodePath area_path;
	NodePath parent_path;
	Layout layout = SCATTER;
	int64_t count = 20;
	double cell_size = 2.0;
	double jitter = 0.0;
	By by = CHANCE;
	double chance = 1.0;
	double frequency = 0.1;
	double threshold = 0.0;
	bool random_rotation = false;
	int64_t placement_seed = 0;
	StringName store_seed_in;
	bool clear_first = false;

	// `a` is why there is no scene, the name of what marks out no area, how many there would be, or on which side the scene is;
	// `b` the area's name for too many cells, or its side.
	void warn_placement(SCMachineBase *machine, int64_t index, int64_t code, const Variant &a, const Variant &b, int64_t most);

	String summary_default() override;
};
