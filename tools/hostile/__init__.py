"""Files that try to make the programs slow or large, and how their cost is measured; tools/hostile-checks runs them."""
